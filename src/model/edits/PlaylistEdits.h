// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What can be done to the song part of one instrument. Plain functions from the state before to the state
// after; what they do not mean stays bit for bit. They know no window and no thread. Places and lengths are
// song steps.
//
// An entry has no length. A repeat is given an end by an entry of an empty pattern behind it, its end mark,
// which moves and goes with it.

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "model/PlaylistSpans.h"

namespace quib {

using PlaylistSelection = std::vector<std::uint32_t>;  // indices of items, ascending

struct PlaylistState {
    std::shared_ptr<const Playlist> playlist = std::make_shared<const Playlist>();
    PlaylistSelection selection;

    const Playlist& Items() const noexcept { return *playlist; }
};

// What the edits have to know of the patterns.
struct SongPatterns {
    PatternLengths lengths{};
    std::array<bool, kPatternCount> empty{};  // no notes
};
SongPatterns SongPatternsOf(const CInstrument& instrument);  // editing thread

// For each item the index of its end mark; -1 without one.
std::vector<std::int32_t> EndMarks(const Playlist& playlist, const SongPatterns& patterns);

bool IsSelected(const PlaylistState& state, std::uint32_t item) noexcept;
PlaylistState Select(const PlaylistState& state, PlaylistSelection selection);
// The items that can be selected: all but end marks.
PlaylistState SelectAll(const PlaylistState& state, const SongPatterns& patterns);

// The new item is the selection. One that begins at the same step is replaced.
PlaylistState AddItem(const PlaylistState& state, const SongPatterns& patterns, int pattern, int start);
// One item that repeats from `first` to `end` at the most, where another begins before. Several items where
// no pattern is free for an end mark.
PlaylistState PaintItem(const PlaylistState& state, const SongPatterns& patterns, int pattern, int first, int end);
// Where an item ends. Nothing when that needs an end mark and no pattern is empty.
std::optional<PlaylistState> SetItemEnd(const PlaylistState& state, const SongPatterns& patterns, std::uint32_t item,
                                        int end);
// The items repeat until another begins, without an end of their own.
PlaylistState RepeatItems(const PlaylistState& state, const SongPatterns& patterns, bool repeat);
// A block stops as one at the song's beginning. What begins where a moved item comes to lie is replaced.
PlaylistState MoveItems(const PlaylistState& state, const SongPatterns& patterns, int steps);
// The same with copies, which are then the selection.
PlaylistState CopyItems(const PlaylistState& state, const SongPatterns& patterns, int steps);
PlaylistState RemoveItems(const PlaylistState& state, const SongPatterns& patterns, const PlaylistSelection& items);
// The selected ones play this pattern, 0..15.
PlaylistState SetItemPattern(const PlaylistState& state, int pattern);
// From `step` on a repeat is an item of its own. Nothing where no turn of a repeat begins.
std::optional<PlaylistState> SplitItems(const PlaylistState& state, const SongPatterns& patterns, int step);

// The steps that the selection sounds on, its repeats up to `songEnd`; empty without one.
struct StepRange {
    int first = 0;
    int end = 0;
    bool IsEmpty() const noexcept { return end <= first; }
};
StepRange RangeOf(const PlaylistState& state, const SongPatterns& patterns, int songEnd);

// The selected items of another instrument, so many steps away and with the patterns that theirs became. Each ends
// where it did there, by an end mark of this one's; where none is free it repeats without end.
PlaylistState WithForeignItems(const PlaylistState& state, const SongPatterns& patterns, const PlaylistState& source,
                               const SongPatterns& sourcePatterns, const std::map<int, int>& patternOf, int steps);

// --- Time, for every instrument alike

Playlist WithTimeInserted(const Playlist& playlist, int at, int steps);
// What still sounds behind the range begins where the range was.
Playlist WithTimeDeleted(const Playlist& playlist, const SongPatterns& patterns, StepRange range);
// The range is played once more behind itself.
Playlist WithSectionDoubled(const Playlist& playlist, const SongPatterns& patterns, StepRange range);

// --- The clipboard

// The selected items with their ends, from step 0 on.
Playlist CopiedItems(const PlaylistState& state, const SongPatterns& patterns);
PlaylistState PasteItems(const PlaylistState& state, const Playlist& items, int at);

}  // namespace quib
