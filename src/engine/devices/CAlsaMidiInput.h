// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// MIDI input through the sequencer of ALSA: one client with one port, connected to the port that the user
// chose by name, whenever that port is there. The editing thread opens and closes; a thread of the input's
// own receives, stamps and queues.

#include <alsa/asoundlib.h>
#include <poll.h>

#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "engine/CAudio.h"
#include "engine/devices/CMidiFeed.h"
#include "platform/CWakeEvent.h"

namespace quib {

class CAlsaMidiInput {
public:
    static constexpr const char* kClientName = "QUIB Sequencer";

    explicit CAlsaMidiInput(CAudio& engine) : feed(engine.MidiInputQueue()) {}
    ~CAlsaMidiInput() { Close(); }
    CAlsaMidiInput(const CAlsaMidiInput&) = delete;
    CAlsaMidiInput& operator=(const CAlsaMidiInput&) = delete;

    // Names of the ports that can be listened to, "client:port", in the order of the system.
    static std::vector<std::string> ListPorts();

    // Listens to the port of that name, now or as soon as it is there. True, too, on a system without a
    // sequencer, where there is nothing to listen to. On failure says why in `error`.
    bool Open(const std::string& portName, std::string& error);
    // Ends what sounds, and gives the client back.
    void Close() noexcept;

    // Whether the port is there and connected. Any thread.
    bool IsConnected() const noexcept { return connected.load(std::memory_order_relaxed); }

private:
    struct CCloseSequencer {
        void operator()(snd_seq_t* handle) const noexcept { snd_seq_close(handle); }
    };
    using Sequencer = std::unique_ptr<snd_seq_t, CCloseSequencer>;

    static std::optional<snd_seq_addr_t> FindPort(snd_seq_t* handle, const std::string& name);
    bool MakePort(std::string& error);
    void Run() noexcept;
    bool Wait(int milliseconds) noexcept;
    void Receive() noexcept;
    void Handle(const snd_seq_event_t& event) noexcept;
    void FollowPorts(const snd_seq_event_t& event) noexcept;
    void Connect() noexcept;
    void Disconnected() noexcept;

    Sequencer sequencer;
    int port = -1;
    std::string wanted;
    std::vector<pollfd> descriptors;  // the first is `stopping`
    CWakeEvent stopping;
    std::thread thread;
    std::atomic<bool> connected{false};

    // Receiving thread.
    CMidiFeed feed;
    snd_seq_addr_t source{};
};

}  // namespace quib
