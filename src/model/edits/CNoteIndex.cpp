// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/CNoteIndex.h"

#include <cmath>
#include <limits>
#include <utility>

#include "model/edits/NoteSnap.h"

namespace quib {

namespace {

float JustAfter(float position) noexcept { return std::nextafter(position, std::numeric_limits<float>::infinity()); }

}  // namespace

CNoteIndex::CNoteIndex(std::shared_ptr<const CPattern> indexed)
    : pattern(std::move(indexed)),
      order(pattern->NotesByStart()),
      blockEnds((order.size() + kBlock - 1) / kBlock, 0.0F) {
    for (std::size_t place = 0; place < order.size(); ++place) {
        float& end = blockEnds[place / kBlock];
        end = std::max(end, At(place).position + At(place).length);
    }
}

std::size_t CNoteIndex::CountBefore(float position) const {
    const auto place = std::partition_point(
        order.begin(), order.end(), [&](std::uint32_t note) { return pattern->Notes()[note].position < position; });
    return static_cast<std::size_t>(place - order.begin());
}

std::optional<std::uint32_t> CNoteIndex::NoteAt(float position, int key, float least) const {
    std::optional<std::uint32_t> topmost;
    VisitRange(position, JustAfter(position), least, [&](std::uint32_t index, const Note& note) {
        if (note.key == key) topmost = index;
    });
    return topmost;
}

NoteSelection CNoteIndex::NotesIn(const NoteArea& area, float least) const {
    NoteSelection found;
    VisitRange(area.from, area.to, least, [&](std::uint32_t index, const Note& note) {
        if (note.key >= area.lowestKey && note.key <= area.highestKey) found.push_back(index);
    });
    std::sort(found.begin(), found.end());
    return found;
}

bool CNoteIndex::IsCellCovered(float cell, double grid, int key) const {
    const float from = cell + kPositionTolerance;
    const float to = grid > 0 ? cell + static_cast<float>(grid) - kPositionTolerance : JustAfter(from);
    bool covered = false;
    VisitRange(from, to, 0, [&](std::uint32_t, const Note& note) { covered = covered || note.key == key; });
    return covered;
}

}  // namespace quib
