// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The next state of a pattern's notes in the making: the one place that keeps untouched notes as they
// are, edited ones within the limits and the selection in step. Used inside the edits only, one thread.

#include <span>
#include <vector>

#include "model/edits/NoteState.h"

namespace quib {

class CNoteDraft {
public:
    // `from` outlives the draft.
    explicit CNoteDraft(const NoteState& from);

    // The selection of the beginning without what it may not hold.
    const NoteSelection& Selection() const noexcept { return selection; }
    // The note as an edit takes it: within the limits, whatever is stored.
    Note At(std::uint32_t note) const { return Repaired(notes[note]); }
    std::vector<Note> All(std::span<const std::uint32_t> wanted) const;

    // Leaves the stored bits when the edit gives what At() gave.
    void Replace(std::uint32_t note, const Note& edited);
    std::uint32_t Append(const Note& note);
    // The draft's indices stay until Finish().
    void Remove(std::span<const std::uint32_t> unwanted);
    void Select(NoteSelection wanted) { selection = std::move(wanted); }
    void SetStepCount(int count) { steps = count; }

    NoteState Finish();

private:
    void DropRemoved();

    const NoteState& origin;
    std::vector<Note> notes;
    NoteSelection selection;
    std::vector<bool> removed;  // empty when there are none
    int steps;
};

}  // namespace quib
