// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The notes of a MIDI track: beginnings paired with ends, of one key in the order in which they began. Used for one
// track after the other, any thread.

#include <array>
#include <cstdint>
#include <vector>

#include "project/midi/MidiFile.h"

namespace quib {

struct MidiNote {
    std::uint32_t start = 0;  // ticks
    std::uint32_t end = 0;    // beyond start
    int key = 0;
    int velocity = 0;  // 1..127
};

class CNotePairs {
public:
    void Read(const MidiTrack& track);

    // In the order of their beginnings. `channel`: 0..15.
    const std::vector<MidiNote>& Notes(int channel) const { return notes[static_cast<std::size_t>(channel)]; }
    // That were no notes.
    std::size_t OtherMessages() const noexcept { return others; }
    // Notes that only the end of the track has ended.
    std::size_t Unended() const noexcept { return unended; }

private:
    // Notes of one key that sound; the first `ended` are over.
    struct Sounding {
        std::vector<std::uint32_t> indices;
        std::size_t ended = 0;
    };
    Sounding& Of(const MidiEvent& event) {
        return sounding[static_cast<std::size_t>(event.Channel()) * 128 + event.first];
    }
    void Begin(const MidiEvent& event);
    void End(const MidiEvent& event);
    void EndAll(std::uint32_t tick);

    std::array<std::vector<MidiNote>, 16> notes;
    std::vector<Sounding> sounding = std::vector<Sounding>(16 * 128);
    std::size_t others = 0;
    std::size_t unended = 0;
};

}  // namespace quib
