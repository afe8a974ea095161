// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Small messages between the editing thread and the render thread. Instruments go by their id: one that
// is gone makes the message void.

#include <cstdint>

namespace quib {

// Editing thread to render thread.
struct EngineCommand {
    enum class EKind : std::uint8_t {
        kPlay,           // from the current song step, patterns from their start
        kStop,           // sounding notes end; while nothing plays: kPanic
        kStopAt,         // value: step where the next playing ends, of the song or counted from its start
        kLocate,         // value: song step
        kSelectPattern,  // value: pattern; at once when stopped, else as ELaunch tells
        kStartPattern,   // value: step; the current pattern begins there at the next beat
        kHoldLaunch,     // value: not 0: patterns that wait for beat or bar wait on until it is 0 again
        kMoveBall,       // value: ball; x, y: 0..127; what is assigned to it follows at once
        kPlayNote,       // value: key; x: velocity, 0 ends the note; as if it came in by MIDI
        kAudition,       // the same straight to the plug-in, as a note of a pattern goes there
        kPanic,          // every note and pedal of every instrument ends, known or not
        kHalt,           // as kStop; while nothing plays: nothing
    };
    EKind kind = EKind::kStop;
    std::uint32_t instrument = 0;
    std::int32_t value = 0;
    float x = 0;
    float y = 0;
    std::uint64_t time = 0;  // kPlayNote: nanosecond at which the key moved; 0: with the next block
};

// Render thread to editing thread.
struct EngineNotice {
    enum class EKind : std::uint8_t {
        kPresetSelected,   // value: preset number
        kProgramSelected,  // instrument, value: program to set in its plug-in
        kLanePoint,        // instrument, lane, pattern, x, y: recorded automation of a MIDI lane
        kLimitLearned,     // instrument: its key range has changed
        kControlHeard,     // while a control is being learned; value: status, data 1 and 2 from the lowest byte on
        kControlAction,    // instrument, lane: EControlTarget, value: its index; a key or controller asks for it
        kNote,             // instrument, value: key, lane: velocity, 0 for its end, pattern, x: step, -1 while
                           // nothing plays, y: samples of a step, sample
    };
    EKind kind = EKind::kPresetSelected;
    std::uint32_t instrument = 0;
    std::int32_t value = 0;
    std::int32_t lane = 0;
    std::int32_t pattern = 0;
    float x = 0;
    float y = 0;
    std::int64_t sample = 0;  // since the start of playing
};

// A short MIDI message with the nanosecond of its arrival.
struct MidiMessage {
    std::uint8_t status = 0;
    std::uint8_t data1 = 0;
    std::uint8_t data2 = 0;
    std::uint64_t time = 0;

    // A channel message whose data are data.
    bool IsValid() const noexcept { return status >= 0x80 && status <= 0xef && data1 < 0x80 && data2 < 0x80; }
};

}  // namespace quib
