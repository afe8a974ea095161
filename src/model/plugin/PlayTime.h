// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where the song is during a block, as plug-ins of every format are told. A value; any thread.

#include <cstdint>

namespace quib {

struct PlayTime {
    double samplePosition = 0;  // samples played since the start
    double sampleRate = 0;      // hertz
    double tempo = 0;           // beats per minute
    double quarterNotes = 0;    // since the start of the song; so are the next three
    double barStart = 0;
    double loopStart = 0;
    double loopEnd = 0;
    std::int32_t beatsPerBar = 0;
    std::int32_t beatUnit = 0;  // 4: quarter notes
    bool known = false;         // false: nothing has been played yet, the rest says nothing
    bool playing = false;
    bool transportChanged = false;  // started, stopped or moved since the last block
    bool looping = false;
    bool recording = false;  // of automation
};

}  // namespace quib
