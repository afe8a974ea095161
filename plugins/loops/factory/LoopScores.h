// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The loops that come with the program, as scores for its own synthesiser and drums.

#include <span>

namespace quibloops {

struct LoopScore {
    const char* name;  // begins with the key that plays it
    int tempo;         // beats per minute
    int bars;
    const char* instrument;  // "QUIB drums" or "QUIB synth"
    int program;
    float swing;         // share of a step by which every second one is late
    const char* insert;  // an effect, or null
    int insertProgram;
    // Lines "key:steps" apart by spaces. A step, a sixteenth, is a strength 1..9, '-' for a note that
    // goes on, or '.'; further colons are bar lines. A line whose length divides the loop's starts
    // over, any other is filled up with rests.
    const char* lines;
};

std::span<const LoopScore> LoopScores();

}  // namespace quibloops
