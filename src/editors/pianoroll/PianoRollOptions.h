// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the window sets for editing and showing notes. Plain values; the window redraws after a change.

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "model/edits/CKeyRows.h"
#include "model/edits/CNoteIndex.h"
#include "model/edits/NoteShaping.h"
#include "model/edits/Scale.h"

namespace quib {

struct PianoRollOptions {
    // --- Editing
    bool audition = true;
    int velocity = 100;  // of a new note
    float length = 0;    // of a new note, in steps; 0: that of the raster
    float quantiseStrength = 1;
    HumaniseSettings humanise{0.1F, 8, 1};  // each use takes the next seed

    // --- Showing
    Scale scale;                       // chromatic: every row alike
    float swing = 0;                   // share of a step by which odd steps sound late
    int lowerLimit = 0;                // keys below are not played
    int upperLimit = kHighestKey + 1;  // this key and those above are not played
    std::vector<std::shared_ptr<const CNoteIndex>> ghosts;
    std::vector<std::string> rowNames = std::vector<std::string>(kHighestKey + 1);  // of drums, by key
    KeySet sounding;                                                                // keys that are held or played now
    std::size_t recordedFrom = std::numeric_limits<std::size_t>::max();  // this note and those after it are of a take
    int focusedKey = -1;                                                 // of a drum's row
};

}  // namespace quib
