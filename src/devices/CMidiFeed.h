// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The way of a MIDI input into the engine's queue: stamps short messages, drops and counts them when the
// queue is full, but never the end of a note or of a pedal, which then waits here. One thread at a time, which may be
// the one that renders; takes no memory and never waits.

#include <bitset>
#include <cstdint>

#include "engine/EngineMessages.h"
#include "model/sharing/CBoundedQueue.h"

namespace quib {

class CMidiFeed {
public:
    explicit CMidiFeed(CBoundedQueue<MidiMessage>& engineQueue) noexcept : queue(engineQueue) {}

    // Everything but channel messages is ignored.
    void Add(const MidiMessage& message) noexcept;
    // A message as its bytes; what is cut short is ignored.
    void Add(const unsigned char* bytes, std::size_t count, std::uint64_t time) noexcept;
    // Hands over the note offs that wait; false when some still do.
    bool Flush(std::uint64_t time) noexcept;
    // Ends every note and lets go the pedals of this input: its device is gone or was switched off.
    void ReleaseAll(std::uint64_t time) noexcept;

private:
    static constexpr std::size_t kChannelKeys = 129;  // the last one is the sustain pedal
    static constexpr std::size_t kKeys = 16 * kChannelKeys;

    static std::size_t KeyOf(const MidiMessage& message) noexcept;
    void NoteOn(const MidiMessage& message, std::size_t key) noexcept;
    void NoteOff(std::size_t key, std::uint64_t time) noexcept;
    bool PushNoteOff(std::size_t key, std::uint64_t time) noexcept;

    CBoundedQueue<MidiMessage>& queue;
    std::bitset<kKeys> down;
    std::bitset<kKeys> owed;  // note offs that found no room
};

}  // namespace quib
