// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// MIDI input through the sequencer of ALSA: one client with one port, connected to the port that the user
// chose by name, whenever that port is there. The editing thread opens and closes; a thread of the input's
// own receives, stamps and queues.

#include <alsa/asoundlib.h>
#include <poll.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "devices/CMidiPortLink.h"
#include "engine/CAudio.h"
#include "platform/CWakeEvent.h"

namespace quib {

class CAlsaMidiInput final : private CMidiPorts {
public:
    static constexpr const char* kClientName = "QUIB Sequencer";

    explicit CAlsaMidiInput(CAudio& engine) : link(*this, engine.MidiInputQueue()) {}
    ~CAlsaMidiInput() override { Close(); }
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
    bool IsConnected() const noexcept { return link.IsConnected(); }

private:
    struct CCloseSequencer {
        void operator()(snd_seq_t* handle) const noexcept { snd_seq_close(handle); }
    };
    using Sequencer = std::unique_ptr<snd_seq_t, CCloseSequencer>;

    std::optional<snd_seq_addr_t> Find(const std::string& name) override;
    bool Connect(snd_seq_addr_t source) override;
    bool MakePort(std::string& error);
    void Run() noexcept;
    bool Wait(int milliseconds) noexcept;
    void Receive() noexcept;

    Sequencer sequencer;
    int port = -1;
    std::vector<pollfd> descriptors;  // the first is `stopping`
    CWakeEvent stopping;
    std::thread thread;
    CMidiPortLink link;  // the receiving thread's while that runs
};

}  // namespace quib
