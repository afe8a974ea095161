// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/CJackOutput.h"

#include <pthread.h>

#include <algorithm>

#include "platform/Clock.h"

namespace quib {

namespace {

constexpr std::array kPortNames = {"left", "right"};
constexpr const char* kMidiPortName = "midi_in";
constexpr std::uint64_t kWatchInterval = 500'000'000;  // nanoseconds

// The library may cancel its thread when the server dies; not in the middle of a block.
class CNoCancellation {
public:
    CNoCancellation() noexcept { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &previous); }
    ~CNoCancellation() { pthread_setcancelstate(previous, nullptr); }
    CNoCancellation(const CNoCancellation&) = delete;
    CNoCancellation& operator=(const CNoCancellation&) = delete;

private:
    int previous = 0;
};

std::vector<std::string> TakeNames(const CJackLibrary& library, const char** names) {
    std::vector<std::string> taken;
    for (const char** name = names; name != nullptr && *name != nullptr; ++name) taken.emplace_back(*name);
    if (names != nullptr) library.free(names);
    return taken;
}

}  // namespace

bool CJackOutput::Open(const AudioSettings&, std::string& error) {
    Close();
    xruns = 0;
    int status = 0;
    client = library.open(kClientName, jack::kNoStartServer, &status);
    if (client == nullptr) {
        error = "the JACK server does not run";
        return false;
    }
    if (!Prepare(error)) {
        Close();
        return false;
    }
    SetState(EOutputState::kOpen);
    return true;
}

bool CJackOutput::Prepare(std::string& error) {
    sampleRate = static_cast<int>(library.sampleRate(client));
    blockSize = static_cast<int>(library.blockSize(client));
    if (!CAudio::IsUsable(sampleRate, blockSize)) {
        error = "unusable sample rate or buffer size";
        return false;
    }
    for (std::size_t index = 0; index < ports.size(); ++index) {
        ports[index] = library.registerPort(client, kPortNames[index], jack::kAudioType, jack::kPortIsOutput, 0);
        if (ports[index] != nullptr) continue;
        error = "the JACK server has no port left";
        return false;
    }
    midiPort = library.registerPort(client, kMidiPortName, jack::kMidiType, jack::kPortIsInput, 0);
    library.setProcess(client, &CJackOutput::OnProcess, this);
    library.setBlockSize(client, &CJackOutput::OnBlockSize, this);
    library.setSampleRate(client, &CJackOutput::OnSampleRate, this);
    library.setXrun(client, &CJackOutput::OnXrun, this);
    library.setConnect(client, &CJackOutput::OnConnect, this);
    library.onShutdown(client, &CJackOutput::OnShutdown, this);
    return true;
}

bool CJackOutput::Start(std::string& error) {
    Stop();
    engineBlock = audio.Format().blockSize;
    SetState(EOutputState::kPlaying);
    gate.Open();
    if (active) return true;
    if (library.activate(client) != 0) {
        error = "the JACK server refused the client";
        return false;
    }
    active = true;
    realTime = library.realTimePriority(client) >= 0;
    Connect();
    return true;
}

void CJackOutput::Stop() noexcept {
    gate.Shut();
    SetState(EOutputState::kOpen);
}

void CJackOutput::Close() noexcept {
    gate.Shut();
    active = false;
    midiFeed.ReleaseAll(Nanoseconds());
    // Its callbacks read `client` until it is closed.
    if (client != nullptr) library.close(client);
    client = nullptr;
    SetState(EOutputState::kClosed);
}

void CJackOutput::Connect() {
    if (wiring->known && ConnectAsBefore()) return;
    ConnectToPlayback();
}

// False when there was something to connect and none of it is there.
bool CJackOutput::ConnectAsBefore() {
    bool wanted = false;
    bool connected = false;
    for (std::size_t index = 0; index < ports.size(); ++index) {
        for (const std::string& target : wiring->targets[index]) {
            wanted = true;
            if (library.connect(client, library.portName(ports[index]), target.c_str()) == 0) connected = true;
        }
    }
    return connected || !wanted;
}

void CJackOutput::ConnectToPlayback() {
    const std::vector<std::string> playback = TakeNames(
        library, library.ports(client, nullptr, jack::kAudioType, jack::kPortIsInput | jack::kPortIsPhysical));
    for (std::size_t index = 0; index < std::min(ports.size(), playback.size()); ++index) {
        library.connect(client, library.portName(ports[index]), playback[index].c_str());
    }
}

void CJackOutput::Watch() {
    if (State() != EOutputState::kPlaying || Nanoseconds() < nextWatch) return;
    nextWatch = Nanoseconds() + kWatchInterval;
    WatchWiring();
    WatchMidi();
}

// What was seen twice is what the user wants; a server that shuts down takes connections apart, too.
void CJackOutput::WatchWiring() {
    JackWiring::Ports now;
    for (std::size_t index = 0; index < ports.size(); ++index) {
        now[index] = TakeNames(library, library.connections(client, ports[index]));
    }
    if (State() != EOutputState::kPlaying) return;
    if (now == wiring->observed) {
        wiring->targets = now;
        wiring->known = true;
    }
    wiring->observed = std::move(now);
}

std::vector<std::string> CJackOutput::MidiPorts() const {
    if (client == nullptr || State() == EOutputState::kLost) return {};
    return TakeNames(library, library.ports(client, nullptr, jack::kMidiType, jack::kPortIsOutput));
}

void CJackOutput::ListenTo(const std::string& portName) {
    listening = !portName.empty();
    midiSource = portName;
    midiSourceSeen = false;
    WatchMidi();
}

// Connects when the port appears; what the user takes apart later stays apart.
void CJackOutput::WatchMidi() {
    if (midiSource.empty() || midiPort == nullptr) return;
    const std::vector<std::string> names = MidiPorts();
    const bool seen = std::find(names.begin(), names.end(), midiSource) != names.end();
    if (seen && !midiSourceSeen) library.connect(client, midiSource.c_str(), library.portName(midiPort));
    midiSourceSeen = seen;
}

int CJackOutput::OnProcess(std::uint32_t frames, void* self) {
    static_cast<CJackOutput*>(self)->Process(frames);
    return 0;
}

int CJackOutput::OnBlockSize(std::uint32_t frames, void* self) {
    auto& output = *static_cast<CJackOutput*>(self);
    output.blockSize = static_cast<int>(frames);
    if (output.blockSize != output.engineBlock) output.LeavePlaying(EOutputState::kFormatChanged);
    return 0;
}

int CJackOutput::OnSampleRate(std::uint32_t rate, void* self) {
    auto& output = *static_cast<CJackOutput*>(self);
    const auto next = static_cast<int>(rate);
    if (output.sampleRate.exchange(next) != next) output.LeavePlaying(EOutputState::kFormatChanged);
    return 0;
}

int CJackOutput::OnXrun(void* self) {
    static_cast<CJackOutput*>(self)->xruns.fetch_add(1, std::memory_order_relaxed);
    return 0;
}

void CJackOutput::OnConnect(std::uint32_t first, std::uint32_t second, int connected, void* self) {
    auto& output = *static_cast<CJackOutput*>(self);
    if (connected != 0 || output.midiPort == nullptr) return;
    for (const std::uint32_t port : {first, second}) {
        if (output.library.portById(output.client, port) == output.midiPort) output.midiCut = true;
    }
}

int CJackOutput::Latency() const noexcept {
    if (client == nullptr || State() != EOutputState::kPlaying) return 0;
    jack::LatencyRange range{};
    library.latencyRange(ports[0], jack::kPlaybackLatency, &range);
    return static_cast<int>(range.maximum);
}

void CJackOutput::OnShutdown(void* self) { static_cast<CJackOutput*>(self)->SetState(EOutputState::kLost); }

void CJackOutput::Process(std::uint32_t frames) noexcept {
    const CNoCancellation whole;
    auto* const left = static_cast<float*>(library.buffer(ports[0], frames));
    auto* const right = static_cast<float*>(library.buffer(ports[1], frames));
    const bool entered = gate.Enter();
    if (entered && Render(static_cast<int>(frames))) {
        std::copy_n(audio.Master(0), frames, left);
        std::copy_n(audio.Master(1), frames, right);
    } else {
        std::fill_n(left, frames, 0.0F);
        std::fill_n(right, frames, 0.0F);
    }
    if (entered) gate.Leave();
}

// False when there is nothing to hear.
bool CJackOutput::Render(int frames) noexcept {
    if (frames != engineBlock) {
        blockSize = frames;
        LeavePlaying(EOutputState::kFormatChanged);
        return false;
    }
    const std::uint64_t now = Nanoseconds();
    if (midiPort != nullptr) ReceiveMidi(frames, now);
    return RenderBlock(now);
}

// The events of the block came in during the one before.
void CJackOutput::ReceiveMidi(int frames, std::uint64_t now) noexcept {
    midiFeed.Flush(now);
    // Whoever it was that went, it ends no note any more.
    if (midiCut.exchange(false)) midiFeed.ReleaseAll(now);
    if (!listening) return midiFeed.ReleaseAll(now);
    void* const events = library.buffer(midiPort, static_cast<std::uint32_t>(frames));
    const std::uint32_t count = library.midiCount(events);
    for (std::uint32_t index = 0; index < count; ++index) {
        jack::MidiEvent event{};
        if (library.midiEvent(&event, events, index) != 0) continue;
        const std::int64_t age = (frames - static_cast<std::int64_t>(event.time)) * 1'000'000'000 / sampleRate;
        midiFeed.Add(event.buffer, event.size, now - static_cast<std::uint64_t>(age));
    }
}

}  // namespace quib
