// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The chords that can be stamped. Any thread.

#include <span>
#include <string_view>

#include "model/edits/NoteState.h"

namespace quib {

enum class ChordType {
    Major,
    Minor,
    Dominant7,
    Major7,
    Minor7,
    Suspended2,
    Suspended4,
    Diminished,
    Augmented,
    Power,
    Octave
};
constexpr int kChordTypeCount = 11;

// As musicians write it after the root: "maj", "m", "7", "maj7" and so on; the same in every language.
std::string_view ChordSymbol(ChordType type) noexcept;
// Semitones above the root, which is the first.
std::span<const int> ChordIntervals(ChordType type) noexcept;

// The chord on `root`, whose start, length and velocity all its notes have. Keys above 127 are left out.
std::vector<Note> MakeChord(const Note& root, ChordType type);
// Adds it, leaving the selection as it is; no note where one of that key starts already.
NoteState StampChord(const NoteState& from, const Note& root, ChordType type);

}  // namespace quib
