// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/COutputManager.h"

#include <fmt/format.h>

#include "platform/Clock.h"

namespace quib {

namespace {
constexpr std::uint64_t kAttemptInterval = 500'000'000;  // nanoseconds
}

COutputManager::COutputManager(CAudio& engine, Texts messageTexts, Message show)
    : audio(engine), texts(std::move(messageTexts)), message(std::move(show)) {}

COutputManager::~COutputManager() { CloseOutput(); }

bool COutputManager::OpenOutput(const AudioSettings& wanted) {
    if (!holding) audio.Hold();
    holding = true;
    CloseOutput();
    settings = wanted;
    formerXruns = 0;
    if (!OpenNamed()) return false;
    OpenMidiIn(settings.midiInDevice);
    audio.Release();
    holding = false;
    return true;
}

void COutputManager::CloseOutput() noexcept {
    if (comeback.valid()) comeback.get();
    lostName.clear();
    DropDevice();
}

bool COutputManager::OpenNamed() {
    const OutputBackEnd& named = backEnds.Of(settings.outputDevice);
    if (OpenOf(named)) return true;
    if (named.hasSubstitute) {
        message(kCaption, fmt::format("{} {}: {}", texts.cannotOpen, named.device, settings.outputDevice));
        if (OpenOf(backEnds.General())) return true;
    }
    const std::string& name = settings.outputDevice.empty() ? backEnds.General().defaultDevice : settings.outputDevice;
    message(kCaption, fmt::format("{}: {}", texts.cannotOpen, name));
    return false;
}

bool COutputManager::OpenOf(const OutputBackEnd& backEnd) {
    for (int attempt = 0; attempt < backEnd.attempts; ++attempt) {
        if (TryDevice(backEnd.make(audio, EFallback::kDefaultDevice))) return true;
    }
    return false;
}

bool COutputManager::TryDevice(Made candidate) {
    std::string error;
    if (!candidate->Open(settings, error)) return false;
    PrepareEngine(candidate->Format());
    if (!candidate->Start(error)) return false;
    device = std::move(candidate);
    return true;
}

bool COutputManager::OpenMidiIn(const std::string& name) {
    settings.midiInDevice = name;
    const bool off = name.empty() || name == kMidiOff;
    if (device) device->ListenTo(off ? std::string() : name);
    midiInput.Close();
    std::string error;
    if (off || midiInput.Open(name, error)) return true;
    message(kCaption, fmt::format("{} MIDI: {}", texts.cannotOpen, name));
    return false;
}

std::vector<std::string> COutputManager::ListMidiInputs() const {
    std::vector<std::string> names = CAlsaMidiInput::ListPorts();
    if (!device) return names;
    for (std::string& name : device->MidiPorts()) names.push_back(std::move(name));
    return names;
}

void COutputManager::PrepareEngine(const DeviceFormat& format) {
    audio.Prepare({static_cast<double>(format.sampleRate), format.blockSize, settings.threads, true});
}

void COutputManager::DropDevice() noexcept {
    if (!device) return;
    device->Close();
    formerXruns += device->Xruns();
    device.reset();
}

std::uint64_t COutputManager::Xruns() const noexcept { return formerXruns + (device ? device->Xruns() : 0); }

void COutputManager::Poll() {
    if (device) device->Watch();
    if (device && device->State() == EOutputState::kFormatChanged) FollowFormat();
    if (device && device->State() == EOutputState::kLost) StandIn();
    if (!lostName.empty()) LookForReturn();
    audio.noteCapture.latency.Set(device ? device->Latency() : 0);
}

void COutputManager::FollowFormat() {
    device->Stop();
    const DeviceFormat format = device->Format();
    std::string error;
    if (!CAudio::IsUsable(format.sampleRate, format.blockSize)) return StandIn();
    PrepareEngine(format);
    if (!device->Start(error)) StandIn();
}

// The engine keeps its format, so whatever sounds goes on without a seam.
void COutputManager::StandIn() {
    const bool told = !lostName.empty();
    lostName = device->Name();
    DropDevice();
    AudioSettings same = settings;
    same.sampleRate = static_cast<int>(audio.Format().sampleRate);
    same.bufferSize = audio.Format().blockSize;
    auto silent = backEnds.StandIn().make(audio, EFallback::kNone);
    std::string error;
    if (silent->Open(same, error) && silent->Start(error)) device = std::move(silent);
    nextAttempt = Nanoseconds() + kAttemptInterval;
    if (!told) message(kCaption, lostName + texts.deviceGone);
}

// Opening may take its time, so another thread does it; what it opened is started here.
void COutputManager::LookForReturn() {
    if (!comeback.valid()) {
        if (Nanoseconds() < nextAttempt) return;
        AudioSettings strict = settings;
        strict.outputDevice = lostName;
        comeback = std::async(std::launch::async,
                              [candidate = backEnds.Of(lostName).make(audio, EFallback::kNone), strict]() mutable {
                                  std::string error;
                                  if (!candidate->Open(strict, error)) candidate.reset();
                                  return std::move(candidate);
                              });
        return;
    }
    if (comeback.wait_for(std::chrono::seconds(0)) != std::future_status::ready) return;
    Made returned = comeback.get();
    nextAttempt = Nanoseconds() + kAttemptInterval;
    if (!returned) return;
    DropDevice();
    const RenderFormat& now = audio.Format();
    const DeviceFormat format = returned->Format();
    if (format != DeviceFormat{static_cast<int>(now.sampleRate), now.blockSize}) PrepareEngine(format);
    std::string error;
    device = std::move(returned);
    if (!device->Start(error)) return StandIn();
    if (settings.midiInDevice != kMidiOff) device->ListenTo(settings.midiInDevice);
    lostName.clear();
}

}  // namespace quib
