// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/CNoteDraft.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace quib {

namespace {

// Bits, since a position may be no number.
bool SameBits(const Note& a, const Note& b) noexcept {
    using Bits = std::array<std::uint32_t, 4>;
    static_assert(sizeof(Note) == sizeof(Bits));
    return std::bit_cast<Bits>(a) == std::bit_cast<Bits>(b);
}

}  // namespace

CNoteDraft::CNoteDraft(const NoteState& from)
    : origin(from),
      notes(from.Notes()),
      selection(quib::Select(from, from.selection).selection),
      steps(from.pattern->StepCount()) {}

std::vector<Note> CNoteDraft::All(std::span<const std::uint32_t> wanted) const {
    std::vector<Note> found;
    found.reserve(wanted.size());
    for (const std::uint32_t note : wanted) found.push_back(At(note));
    return found;
}

void CNoteDraft::Replace(std::uint32_t note, const Note& edited) {
    const Note fitting = Repaired(edited);
    if (fitting != At(note)) notes[note] = fitting;
}

std::uint32_t CNoteDraft::Append(const Note& note) {
    notes.push_back(Repaired(note));
    return static_cast<std::uint32_t>(notes.size() - 1);
}

void CNoteDraft::Remove(std::span<const std::uint32_t> unwanted) {
    removed.resize(notes.size());
    for (const std::uint32_t note : unwanted) {
        if (note < removed.size()) removed[note] = true;
    }
}

void CNoteDraft::DropRemoved() {
    removed.resize(notes.size());
    std::vector<std::uint32_t> moved(notes.size());
    std::uint32_t kept = 0;
    for (std::size_t note = 0; note < notes.size(); ++note) {
        moved[note] = kept;
        if (!removed[note]) notes[kept++] = notes[note];
    }
    notes.resize(kept);
    std::erase_if(selection, [this](std::uint32_t note) { return removed[note]; });
    for (std::uint32_t& note : selection) note = moved[note];
}

NoteState CNoteDraft::Finish() {
    if (!removed.empty()) DropRemoved();
    const std::vector<Note>& before = origin.Notes();
    const bool same = steps == origin.pattern->StepCount() &&
                      std::equal(notes.begin(), notes.end(), before.begin(), before.end(), SameBits);
    if (same) return {origin.pattern, std::move(selection)};
    return {std::make_shared<const CPattern>(steps, std::move(notes), origin.pattern->LoopStart()),
            std::move(selection)};
}

}  // namespace quib
