// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/CAlsaOutput.h"

#include <algorithm>

#include "devices/AlsaMessages.h"
#include "engine/Int16Frames.h"
#include "platform/Clock.h"
#include "platform/ThreadPriority.h"

namespace quib {

namespace {

constexpr std::uint64_t kSecond = 1'000'000'000;  // nanoseconds
// A device's own clock, however fast, does not win so much on ours within a second.
constexpr std::int64_t kLeadDivisor = 10;  // of a second
// A device that takes nothing for so long hangs.
constexpr std::uint64_t kLongestStall = 3 * kSecond;

// A name that belongs to another system may not even be one that the library can read.
bool MeansAbsent(int error) noexcept {
    return error == -ENOENT || error == -ENODEV || error == -ENXIO || error == -EINVAL;
}

std::string Describe(int error) { return snd_strerror(error); }

}  // namespace

bool CAlsaOutput::Open(const AudioSettings& settings, std::string& error) {
    Close();
    if (!CAudio::IsUsable(settings.sampleRate, settings.bufferSize)) {
        error = "unusable sample rate or buffer size";
        return false;
    }
    QuietAlsa();
    name = settings.outputDevice.empty() ? kDefaultDevice : settings.outputDevice;
    int result = OpenPcm(name);
    if (MeansAbsent(result) && fallback == EFallback::kDefaultDevice && name != kDefaultDevice) {
        name = kDefaultDevice;
        result = OpenPcm(name);
    }
    if (result >= 0) result = Configure(settings);
    if (result >= 0 && !CAudio::IsUsable(format.sampleRate, format.blockSize)) result = -EINVAL;
    if (result < 0) {
        error = Describe(result);
        Close();
        return false;
    }
    interleaved.assign(static_cast<std::size_t>(format.blockSize) * 2, 0);
    xruns = 0;
    SetState(EOutputState::kOpen);
    return true;
}

int CAlsaOutput::OpenPcm(const std::string& wanted) {
    return snd_pcm_open(&pcm, wanted.c_str(), SND_PCM_STREAM_PLAYBACK, SND_PCM_NONBLOCK);
}

int CAlsaOutput::Configure(const AudioSettings& settings) {
    snd_pcm_hw_params_t* hardware = nullptr;
    snd_pcm_hw_params_alloca(&hardware);
    snd_pcm_sw_params_t* software = nullptr;
    snd_pcm_sw_params_alloca(&software);
    auto rate = static_cast<unsigned>(settings.sampleRate);
    auto period = static_cast<snd_pcm_uframes_t>(settings.bufferSize);
    snd_pcm_uframes_t ring = 0;
    int result = 0;
    const auto succeeded = [&result](int step) {
        result = step;
        return step >= 0;
    };
    const bool configured =
        succeeded(snd_pcm_hw_params_any(pcm, hardware)) &&
        succeeded(snd_pcm_hw_params_set_access(pcm, hardware, SND_PCM_ACCESS_RW_INTERLEAVED)) &&
        succeeded(snd_pcm_hw_params_set_format(pcm, hardware, SND_PCM_FORMAT_S16_LE)) &&
        succeeded(snd_pcm_hw_params_set_channels(pcm, hardware, 2)) &&
        succeeded(snd_pcm_hw_params_set_rate_near(pcm, hardware, &rate, nullptr)) &&
        succeeded(snd_pcm_hw_params_set_period_size_near(pcm, hardware, &period, nullptr)) &&
        succeeded(snd_pcm_hw_params_set_buffer_size_near(pcm, hardware, &(ring = period * kBlocks))) &&
        succeeded(snd_pcm_hw_params(pcm, hardware)) && succeeded(snd_pcm_sw_params_current(pcm, software)) &&
        succeeded(snd_pcm_sw_params_set_avail_min(pcm, software, period)) &&
        succeeded(snd_pcm_sw_params_set_start_threshold(pcm, software, ring)) &&
        succeeded(snd_pcm_sw_params(pcm, software));
    if (!configured) return result;
    if (ring < 2 * period) return -EINVAL;
    format = {static_cast<int>(rate), static_cast<int>(period)};
    ringFrames = static_cast<int>(ring);
    return 0;
}

bool CAlsaOutput::Start(std::string& error) {
    Stop();
    const int count = snd_pcm_poll_descriptors_count(pcm);
    descriptors.assign(static_cast<std::size_t>(std::max(count, 0)) + 1, pollfd{});
    descriptors[0] = {stopping.Descriptor(), POLLIN, 0};
    int result = std::min(count, snd_pcm_prepare(pcm));
    if (result >= 0) result = FillWithSilence();
    if (result < 0) {
        error = Describe(result);
        return false;
    }
    SetState(EOutputState::kPlaying);
    thread = std::thread([this] { Run(); });
    return true;
}

void CAlsaOutput::Stop() noexcept {
    if (!thread.joinable()) return;
    stopping.Signal();
    thread.join();
    stopping.Clear();
    snd_pcm_drop(pcm);
    SetState(EOutputState::kOpen);
}

void CAlsaOutput::Close() noexcept {
    Stop();
    if (pcm != nullptr) snd_pcm_close(std::exchange(pcm, nullptr));
    SetState(EOutputState::kClosed);
}

int CAlsaOutput::FillWithSilence() noexcept {
    std::fill(interleaved.begin(), interleaved.end(), std::int16_t{0});
    for (int frames = 0; frames + format.blockSize <= ringFrames; frames += format.blockSize) {
        if (const int result = WriteBlock(); result < 0) return result;
    }
    return snd_pcm_state(pcm) == SND_PCM_STATE_PREPARED ? snd_pcm_start(pcm) : 0;
}

void CAlsaOutput::Run() noexcept {
    realTime = SetRealTimePriority();
    startTime = progressTime = Nanoseconds();
    framesWritten = 0;
    ownClock = false;
    while (WaitForRoom()) {
        const int result = Feed();
        if (result < 0 && Recover(result) < 0) return LeavePlaying(EOutputState::kLost);
        if (Nanoseconds() - progressTime > kLongestStall) return LeavePlaying(EOutputState::kLost);
        PaceWithoutClock();
    }
}

// Renders and writes every block that had room.
int CAlsaOutput::Feed() noexcept {
    const snd_pcm_sframes_t room = snd_pcm_avail_update(pcm);
    for (snd_pcm_sframes_t left = room; left >= format.blockSize; left -= format.blockSize) {
        if (RenderBlock()) {
            ToInt16Frames(audio.Master(0), audio.Master(1), interleaved.data(), format.blockSize);
        } else {
            std::fill(interleaved.begin(), interleaved.end(), std::int16_t{0});
        }
        if (const int result = WriteBlock(); result < 0) return result;
        framesWritten += format.blockSize;
        progressTime = Nanoseconds();
        if (ownClock) return 0;
    }
    return room < 0 ? static_cast<int>(room) : 0;
}

int CAlsaOutput::WriteBlock() noexcept {
    snd_pcm_sframes_t done = 0;
    while (done < format.blockSize) {
        const snd_pcm_sframes_t count =
            snd_pcm_writei(pcm, interleaved.data() + 2 * done, static_cast<snd_pcm_uframes_t>(format.blockSize - done));
        if (count == -EAGAIN && WaitForRoom()) continue;
        if (count < 0) return static_cast<int>(count);
        done += count;
    }
    return 0;
}

// After an underrun the ring starts again from silence; anything else but a pause of the system is final.
int CAlsaOutput::Recover(int error) noexcept {
    if (error == -EAGAIN || error == -EINTR) return 0;
    if (error != -EPIPE && error != -ESTRPIPE) return error;
    xruns.fetch_add(1, std::memory_order_relaxed);
    int result = error == -ESTRPIPE ? snd_pcm_resume(pcm) : -ENOSYS;
    if (result < 0) result = snd_pcm_prepare(pcm);
    return result < 0 ? result : FillWithSilence();
}

// False when the thread is to end. Returns at the latest after a tenth of a second.
bool CAlsaOutput::WaitForRoom() noexcept {
    const auto count = static_cast<unsigned>(descriptors.size() - 1);
    snd_pcm_poll_descriptors(pcm, descriptors.data() + 1, count);
    const int ready = poll(descriptors.data(), descriptors.size(), 100);
    if (ready > 0 && (descriptors[0].revents & POLLIN) != 0) return false;
    unsigned short events = 0;
    if (ready > 0) snd_pcm_poll_descriptors_revents(pcm, descriptors.data() + 1, count, &events);
    return true;
}

// Devices that take everything at once, such as a file, are fed by our own clock. They show it by running ahead
// of the time, which no machine under load can make a real device do.
void CAlsaOutput::PaceWithoutClock() noexcept {
    const std::uint64_t passed = Nanoseconds() - startTime;
    const auto rate = static_cast<std::int64_t>(format.sampleRate);
    const auto due = static_cast<std::uint64_t>(framesWritten) * kSecond / static_cast<std::uint64_t>(rate);
    if (!ownClock) {
        const auto expected = static_cast<std::int64_t>(passed * static_cast<std::uint64_t>(rate) / kSecond);
        ownClock = framesWritten - expected > std::int64_t{2} * ringFrames + rate / kLeadDivisor;
        if (!ownClock && passed > kSecond) {
            startTime += passed;
            framesWritten = 0;
        }
    }
    if (ownClock && due > passed) stopping.WaitFor(due - passed);
}

}  // namespace quib
