// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What becomes of the events of ALSA's sequencer: messages go to the engine, and announcements of ports that
// come and go keep the connection to the port of the wanted name. One thread at a time, never one that renders.

#include <alsa/asoundlib.h>

#include <atomic>
#include <optional>
#include <string>

#include "devices/CMidiFeed.h"

namespace quib {

// The ports of a sequencer.
class CMidiPorts {
public:
    virtual ~CMidiPorts() = default;
    virtual std::optional<snd_seq_addr_t> Find(const std::string& name) = 0;
    // From that port to ours.
    virtual bool Connect(snd_seq_addr_t source) = 0;
};

// A message that the engine knows, or nothing. `time` in nanoseconds.
std::optional<MidiMessage> ToMessage(const snd_seq_event_t& event, std::uint64_t time) noexcept;

class CMidiPortLink {
public:
    CMidiPortLink(CMidiPorts& system, CBoundedQueue<MidiMessage>& engineQueue) : ports(system), feed(engineQueue) {}

    // Connects to the port of that name, now or as soon as it is there.
    void Listen(const std::string& portName);
    // Ends what sounds.
    void Leave(std::uint64_t time) noexcept;

    void Handle(const snd_seq_event_t& event, std::uint64_t time);
    // Events were lost, note offs or announcements perhaps among them.
    void LostSome(std::uint64_t time);
    // As CMidiFeed's.
    bool Flush(std::uint64_t time) noexcept { return feed.Flush(time); }

    // Any thread.
    bool IsConnected() const noexcept { return connected.load(std::memory_order_relaxed); }

private:
    void Connect();

    CMidiPorts& ports;
    CMidiFeed feed;
    std::string wanted;
    snd_seq_addr_t source{};
    std::atomic<bool> connected{false};
};

}  // namespace quib
