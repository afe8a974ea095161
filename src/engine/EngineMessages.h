// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Small messages between the editing thread and the render thread. Instruments go by their id: one that
// is gone makes the message void.

#include <cstdint>

namespace quib {

// Editing thread to render thread.
struct EngineCommand {
    enum class Kind : std::uint8_t {
        Play,           // from the current song step, patterns from their start
        Stop,           // sounding notes end
        StopAt,         // value: step where the next playing ends, of the song or counted from its start
        Locate,         // value: song step
        SelectPattern,  // value: pattern; at once when stopped, at the end of the current one when playing
        StartPattern,   // value: step; the current pattern begins there at the next beat
        MoveBall,       // value: ball; x, y: 0..127
        PlayNote,       // value: key; x: velocity, 0 ends the note; as if it came in by MIDI
    };
    Kind kind = Kind::Stop;
    std::uint32_t instrument = 0;
    std::int32_t value = 0;
    float x = 0;
    float y = 0;
};

// Render thread to editing thread.
struct EngineNotice {
    enum class Kind : std::uint8_t {
        PresetSelected,   // value: preset number
        ProgramSelected,  // instrument, value: program to set in its plug-in
        LanePoint,        // instrument, lane, pattern, x, y: recorded automation of a MIDI lane
        LimitLearned,     // instrument: its key range has changed
    };
    Kind kind = Kind::PresetSelected;
    std::uint32_t instrument = 0;
    std::int32_t value = 0;
    std::int32_t lane = 0;
    std::int32_t pattern = 0;
    float x = 0;
    float y = 0;
};

// A short MIDI message with the millisecond of its arrival.
struct MidiMessage {
    std::uint8_t status = 0;
    std::uint8_t data1 = 0;
    std::uint8_t data2 = 0;
    std::uint32_t time = 0;
};

}  // namespace quib
