// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The chords that can be stamped. Any thread.

#include <span>
#include <string_view>

#include "model/edits/NoteState.h"

namespace quib {

enum class EChordType {
    kMajor,
    kMinor,
    kDominant7,
    kMajor7,
    kMinor7,
    kSuspended2,
    kSuspended4,
    kDiminished,
    kAugmented,
    kPower,
    kOctave
};
constexpr int kChordTypeCount = 11;

// As musicians write it after the root: "maj", "m", "7", "maj7" and so on; the same in every language.
std::string_view ChordSymbol(EChordType type) noexcept;
// Semitones above the root, which is the first.
std::span<const int> ChordIntervals(EChordType type) noexcept;

// The chord on `root`, whose start, length and velocity all its notes have. Keys above 127 are left out.
std::vector<Note> MakeChord(const Note& root, EChordType type);
// Adds it, leaving the selection as it is; no note where one of that key starts already.
NoteState StampChord(const NoteState& from, const Note& root, EChordType type);

}  // namespace quib
