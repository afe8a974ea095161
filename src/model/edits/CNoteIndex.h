// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Finds the playable notes of a pattern by their place, for drawing and for the mouse. Built once for
// each pattern, immutable, any thread. It knows blocks of notes by their latest end, so that a long
// note is found however far before it starts.
//
// Notes are drawn in the order in which they are found: earlier start first, then as they were added.
// The topmost one is the last of them.

#include <memory>
#include <optional>
#include <vector>

#include "model/edits/NoteState.h"

namespace quib {

class CNoteIndex {
public:
    explicit CNoteIndex(std::shared_ptr<const CPattern> indexed);

    const std::shared_ptr<const CPattern>& Pattern() const noexcept { return pattern; }
    // Indices of all playable notes in the order of drawing.
    std::span<const std::uint32_t> DrawingOrder() const noexcept { return order; }

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

    std::shared_ptr<const CPattern> pattern;
    std::span<const std::uint32_t> order;  // into the pattern
    std::vector<float> blockEnds;          // the latest end in each kBlock notes of `order`
};

}  // namespace quib
