// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/Chord.h"

#include <array>
#include <utility>

#include "model/edits/NoteEdits.h"
#include "model/edits/NoteSnap.h"

namespace quib {

namespace {

struct ChordRow {
    std::string_view symbol;
    int count;
    std::array<int, 4> intervals;
};

// In the order of EChordType.
constexpr std::array<ChordRow, kChordTypeCount> kChords{{
    {"maj", 3, {0, 4, 7}},
    {"m", 3, {0, 3, 7}},
    {"7", 4, {0, 4, 7, 10}},
    {"maj7", 4, {0, 4, 7, 11}},
    {"m7", 4, {0, 3, 7, 10}},
    {"sus2", 3, {0, 2, 7}},
    {"sus4", 3, {0, 5, 7}},
    {"dim", 3, {0, 3, 6}},
    {"aug", 3, {0, 4, 8}},
    {"5", 2, {0, 7}},
    {"8", 2, {0, 12}},
}};

const ChordRow& RowOf(EChordType type) noexcept { return kChords[static_cast<std::size_t>(type)]; }

}  // namespace

std::string_view ChordSymbol(EChordType type) noexcept { return RowOf(type).symbol; }

std::span<const int> ChordIntervals(EChordType type) noexcept {
    const ChordRow& row = RowOf(type);
    return {row.intervals.data(), static_cast<std::size_t>(row.count)};
}

std::vector<Note> MakeChord(const Note& root, EChordType type) {
    std::vector<Note> notes;
    for (const int interval : ChordIntervals(type)) {
        Note note = Repaired(root);
        note.key += interval;
        if (note.key <= kHighestKey) notes.push_back(note);
    }
    return notes;
}

NoteState StampChord(const NoteState& from, const Note& root, EChordType type) {
    std::vector<Note> notes = MakeChord(root, type);
    const float start = notes.front().position;
    for (const std::uint32_t index :
         NotesStartingIn(*from.pattern, start - 2 * kPositionTolerance, start + 2 * kPositionTolerance)) {
        const Note& there = from.Notes()[index];
        std::erase_if(notes, [&](const Note& note) {
            return note.key == there.key && IsSamePosition(note.position, there.position);
        });
    }
    return AddNotes(from, notes);
}

}  // namespace quib
