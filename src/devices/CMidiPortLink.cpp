// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/CMidiPortLink.h"

#include "model/MidiEvents.h"

namespace quib {

namespace {

// The time of arrival is left open.
MidiMessage Message(int status, int channel, unsigned data1, int data2) noexcept {
    return {static_cast<std::uint8_t>(status | (channel & 0x0f)), static_cast<std::uint8_t>(data1 & 0x7f),
            static_cast<std::uint8_t>(data2 & 0x7f), 0};
}

std::optional<MidiMessage> Translate(const snd_seq_event_t& event) noexcept {
    const snd_seq_ev_note_t& note = event.data.note;
    const snd_seq_ev_ctrl_t& control = event.data.control;
    switch (event.type) {
        case SND_SEQ_EVENT_NOTEON:
            return Message(kNoteOn, note.channel, note.note, note.velocity);
        case SND_SEQ_EVENT_NOTEOFF:
            return Message(kNoteOff, note.channel, note.note, 0);
        case SND_SEQ_EVENT_CONTROLLER:
            return Message(kControlChange, control.channel, control.param, control.value);
        case SND_SEQ_EVENT_PGMCHANGE:
            return Message(kProgramChange, control.channel, static_cast<unsigned>(control.value), 0);
        case SND_SEQ_EVENT_CHANPRESS:
            return Message(kChannelPressure, control.channel, static_cast<unsigned>(control.value), 0);
        case SND_SEQ_EVENT_PITCHBEND: {
            const int bend = control.value + 8192;  // 0 .. 16383
            return Message(kPitchBend, control.channel, static_cast<unsigned>(bend), bend >> 7);
        }
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<MidiMessage> ToMessage(const snd_seq_event_t& event, std::uint64_t time) noexcept {
    auto message = Translate(event);
    if (message) message->time = time;
    return message;
}

void CMidiPortLink::Listen(const std::string& portName) {
    wanted = portName;
    Connect();
}

void CMidiPortLink::Leave(std::uint64_t time) noexcept {
    connected = false;
    source = {};
    feed.ReleaseAll(time);
}

void CMidiPortLink::Handle(const snd_seq_event_t& event, std::uint64_t time) {
    if (const auto message = ToMessage(event, time)) return feed.Add(*message);
    if (event.source.client != SND_SEQ_CLIENT_SYSTEM) return;
    const snd_seq_addr_t& address = event.data.addr;
    switch (event.type) {
        case SND_SEQ_EVENT_PORT_EXIT:
            if (address.client == source.client && address.port == source.port) Leave(time);
            break;
        case SND_SEQ_EVENT_CLIENT_EXIT:
            if (address.client == source.client) Leave(time);
            break;
        case SND_SEQ_EVENT_PORT_UNSUBSCRIBED:
            // Whoever it was that the user took away from us, it ends no note any more.
            if (event.data.connect.dest.client == event.dest.client) feed.ReleaseAll(time);
            return;
        case SND_SEQ_EVENT_CLIENT_CHANGE:
        case SND_SEQ_EVENT_PORT_START:
        case SND_SEQ_EVENT_PORT_CHANGE:
            break;
        default:
            return;
    }
    if (!connected) Connect();
}

void CMidiPortLink::LostSome(std::uint64_t time) {
    feed.ReleaseAll(time);
    const auto found = ports.Find(wanted);
    const bool same = connected && found && found->client == source.client && found->port == source.port;
    if (same) return;
    Leave(time);
    Connect();
}

void CMidiPortLink::Connect() {
    const auto found = ports.Find(wanted);
    if (!found || !ports.Connect(*found)) return;
    source = *found;
    connected = true;
}

}  // namespace quib
