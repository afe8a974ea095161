// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A client of the JACK server: the server decides rate and block size and calls on a thread of its own, in
// which the engine renders into two float ports. Callbacks only render or note down what happened; the
// editing thread draws the consequences.

#include <array>
#include <memory>
#include <vector>

#include "devices/CJackLibrary.h"
#include "devices/CMidiFeed.h"
#include "devices/COutputDevice.h"
#include "devices/CRenderGate.h"

namespace quib {

// What the user connected our ports to, kept over a restart of the server. Editing thread only.
struct JackWiring {
    using Ports = std::array<std::vector<std::string>, 2>;
    bool known = false;
    Ports targets;   // as they were for a while
    Ports observed;  // as they were seen last
};

class CJackOutput final : public COutputDevice {
public:
    static constexpr const char* kName = "JACK";
    static constexpr const char* kClientName = "QUIB Sequencer";

    CJackOutput(CAudio& engine, std::shared_ptr<const CJackLibrary> jackLibrary, std::shared_ptr<JackWiring> userWiring)
        : COutputDevice(engine),
          loaded(std::move(jackLibrary)),
          library(*loaded),
          wiring(std::move(userWiring)),
          midiFeed(engine.DeviceMidiQueue()) {}
    ~CJackOutput() override { Close(); }

    // Rate and buffer size of the settings are not used.
    bool Open(const AudioSettings& settings, std::string& error) override;
    bool Start(std::string& error) override;
    void Stop() noexcept override;
    void Close() noexcept override;
    void Watch() override;
    std::vector<std::string> MidiPorts() const override;
    void ListenTo(const std::string& portName) override;
    const std::string& Name() const noexcept override { return name; }
    DeviceFormat Format() const noexcept override { return {sampleRate.load(), blockSize.load()}; }
    int Latency() const noexcept override;

private:
    bool Prepare(std::string& error);
    void Connect();
    bool ConnectAsBefore();
    void ConnectToPlayback();

    static int OnProcess(std::uint32_t frames, void* self);
    static int OnBlockSize(std::uint32_t frames, void* self);
    static int OnSampleRate(std::uint32_t rate, void* self);
    static int OnXrun(void* self);
    static void OnConnect(std::uint32_t first, std::uint32_t second, int connected, void* self);
    static void OnShutdown(void* self);
    void Process(std::uint32_t frames) noexcept;
    bool Render(int frames) noexcept;
    void ReceiveMidi(int frames, std::uint64_t now) noexcept;
    void WatchWiring();
    void WatchMidi();

    std::shared_ptr<const CJackLibrary> loaded;
    const CJackLibrary& library;
    std::shared_ptr<JackWiring> wiring;
    jack::Client* client = nullptr;
    std::array<jack::Port*, 2> ports{};
    jack::Port* midiPort = nullptr;
    std::string midiSource;
    bool midiSourceSeen = false;
    bool active = false;
    std::string name = kName;
    std::uint64_t nextWatch = 0;  // nanoseconds

    CMidiFeed midiFeed;  // of whoever is behind the gate
    CRenderGate gate;
    std::atomic<bool> listening{false};
    std::atomic<bool> midiCut{false};  // a connection of the MIDI port was taken apart
    std::atomic<int> sampleRate{0};
    std::atomic<int> blockSize{0};
    std::atomic<int> engineBlock{0};  // frames that the engine renders at present
};

}  // namespace quib
