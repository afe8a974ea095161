// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Edits that shape what is written already. Where it says "else all", an empty selection stands for
// every playable note and stays empty.

#include <cstdint>
#include <span>

#include "model/edits/NoteState.h"

namespace quib {

struct QuantiseSettings {
    double grid = 1;     // steps; not above 0: nothing happens
    float strength = 1;  // 0 to 1, how much of the way to the grid
    bool ends = false;   // the ends too; else the lengths stay
};
// Of one note, as for input.
Note Quantised(const Note& note, const QuantiseSettings& settings) noexcept;
// The selection, else all.
NoteState QuantiseNotes(const NoteState& from, const QuantiseSettings& settings);

struct HumaniseSettings {
    float time = 0;          // steps, the most to either side
    int velocity = 0;        // the most to either side; what sounds goes on sounding, what is silent stays silent
    std::uint32_t seed = 0;  // the same seed gives the same result
};
// The selection, else all.
NoteState HumaniseNotes(const NoteState& from, const HumaniseSettings& settings);

// Copies the selection to just after its span, which is rounded up to whole `grid`s, and selects the copies.
NoteState DuplicateNotes(const NoteState& from, double grid);
// Makes one note of the selected ones of each key, from the first start to the last end, with the
// velocity of the first.
NoteState JoinNotes(const NoteState& from);
// Cuts the selection, else all, at `positions` (steps, any order). No piece is shorter than kShortestNote.
NoteState SplitNotes(const NoteState& from, std::span<const float> positions);
NoteState SplitNote(const NoteState& from, std::uint32_t note, float position);

// The selection, else all: each note ends where the next later one of them starts. The last ones keep their length.
NoteState LegatoNotes(const NoteState& from);
// The selection, else all, mirrored in time within their own span.
NoteState ReverseNotes(const NoteState& from);
// The selection, else all, mirrored between their lowest and highest key.
NoteState InvertNotes(const NoteState& from);
// The selection, else all: of the notes that start together each next one `delay` steps later, lowest
// key first, or highest first when `delay` is negative. The ends stay.
NoteState StrumNotes(const NoteState& from, float delay);

}  // namespace quib
