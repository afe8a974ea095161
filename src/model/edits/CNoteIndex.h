// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Finds the playable notes of a pattern by their place, for drawing and for the mouse. Built once for
// each pattern, immutable, any thread. It knows blocks of notes by their latest end, so that a long
// note is found however far before it starts.
//
// Notes are drawn in the order in which they are found: earlier start first, then as they were added.
// The topmost one is the last of them.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "model/edits/NoteState.h"

namespace quib {

class CNoteIndex {
public:
    explicit CNoteIndex(std::shared_ptr<const CPattern> indexed);

    const std::shared_ptr<const CPattern>& Pattern() const noexcept { return pattern; }

    // Calls `visit(std::uint32_t index, const Note&)` for each note that touches [from, to) steps, in the
    // order of drawing. `least`: how long, in steps, the shortest note is drawn.
    template <class Visit>
    void VisitRange(float from, float to, float least, Visit&& visit) const;

    // The topmost note at `position` (steps) on `key`; nothing when there is none.
    std::optional<std::uint32_t> NoteAt(float position, int key, float least = 0) const;
    // What a marquee touches; ascending indices.
    NoteSelection NotesIn(const NoteArea& area, float least = 0) const;
    // Whether a note of `key` reaches into the cell [cell, cell + grid), so that no new one goes there. What
    // ends or starts within the tolerance of the cell's edges is outside.
    bool IsCellCovered(float cell, double grid, int key) const;

private:
    static constexpr std::size_t kBlock = 64;

    const Note& At(std::size_t place) const { return pattern->Notes()[order[place]]; }
    // How many notes of `order` start before `position`.
    std::size_t CountBefore(float position) const;

    std::shared_ptr<const CPattern> pattern;
    std::span<const std::uint32_t> order;  // into the pattern, by start
    std::vector<float> blockEnds;          // the latest end in each kBlock notes of `order`
};

template <class Visit>
void CNoteIndex::VisitRange(float from, float to, float least, Visit&& visit) const {
    const std::size_t end = CountBefore(to);
    for (std::size_t block = 0; block * kBlock < end; ++block) {
        const std::size_t first = block * kBlock;
        const std::size_t last = std::min(first + kBlock, end);
        const float latestStart = At(last - 1).position;
        if (blockEnds[block] <= from && latestStart < from && latestStart + least <= from) continue;
        for (std::size_t place = first; place < last; ++place) {
            const Note& note = At(place);
            const float noteEnd = note.position + std::max(note.length, least);
            if ((noteEnd > from || note.position >= from) && IsPlayable(note)) visit(order[place], note);
        }
    }
}

}  // namespace quib
