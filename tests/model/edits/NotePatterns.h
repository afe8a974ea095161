// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Patterns for the tests of note edits, with the odd notes that files may hold.

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "model/edits/NoteState.h"

namespace quib {

inline NoteState StateOf(std::vector<Note> notes, NoteSelection selection = {}, int steps = 16) {
    return {std::make_shared<const CPattern>(steps, std::move(notes)), std::move(selection)};
}

inline std::vector<Note> OddNotes() {
    const float noNumber = std::numeric_limits<float>::quiet_NaN();
    return {{-3.0F, 1.0F, 60, 90}, {noNumber, 1.0F, 60, 90}, {2.0F, 0.0F, 61, 80}, {3.0F, 1.0F, 200, 300},
            {4.0F, -2.0F, -9, -1}, {2e6F, 9.0F, 40, 10},     {5.0F, 4.0F, 62, 70}, {5.0F, 4.0F, 62, 70}};
}

// `count` notes within `steps`, some of them long, followed by the odd ones.
inline std::vector<Note> RandomNotes(std::mt19937& random, int count, float steps) {
    std::vector<Note> notes;
    for (int i = 0; i < count; ++i) {
        const auto draw = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most)); };
        const float position = static_cast<float>(draw(10000)) / 10000.0F * steps;
        const float length = draw(20) == 0 ? steps / 2 : 0.25F * static_cast<float>(1 + draw(8));
        notes.push_back({position, length, draw(128), draw(128)});
    }
    for (const Note& odd : OddNotes()) notes.push_back(odd);
    return notes;
}

}  // namespace quib
