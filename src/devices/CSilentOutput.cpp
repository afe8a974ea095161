// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/CSilentOutput.h"

#include "platform/Clock.h"

namespace quib {

namespace {
// Later than this and the clock starts anew: the machine slept, or was stopped in a debugger.
constexpr std::int64_t kLongestDelay = 1'000'000'000;  // nanoseconds
}  // namespace

bool CSilentOutput::Open(const AudioSettings& settings, std::string& error) {
    Close();
    if (!CAudio::IsUsable(settings.sampleRate, settings.bufferSize)) {
        error = "unusable sample rate or buffer size";
        return false;
    }
    format = {settings.sampleRate, settings.bufferSize};
    xruns = 0;
    SetState(EOutputState::kOpen);
    return true;
}

bool CSilentOutput::Start(std::string&) {
    Stop();
    SetState(EOutputState::kPlaying);
    thread = std::thread([this] { Run(); });
    return true;
}

void CSilentOutput::Stop() noexcept {
    if (!thread.joinable()) return;
    stopping.Signal();
    thread.join();
    stopping.Clear();
    SetState(EOutputState::kOpen);
}

void CSilentOutput::Close() noexcept {
    Stop();
    SetState(EOutputState::kClosed);
}

void CSilentOutput::Run() noexcept {
    std::uint64_t start = Nanoseconds();
    std::int64_t frames = 0;
    for (;;) {
        // Nobody hears this: where no block may be rendered its time just passes.
        static_cast<void>(RenderBlock());
        frames += format.blockSize;
        const auto due = static_cast<std::int64_t>(start) + frames * 1'000'000'000 / format.sampleRate;
        const std::int64_t wait = due - static_cast<std::int64_t>(Nanoseconds());
        if (stopping.WaitFor(wait > 0 ? static_cast<std::uint64_t>(wait) : 0)) return;
        if (wait > -kLongestDelay) continue;
        start = Nanoseconds();
        frames = 0;
    }
}

}  // namespace quib
