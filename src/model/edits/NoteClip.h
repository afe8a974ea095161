// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Notes that were copied, as a value: they may go into any pattern, instrument or project. Any thread.

#include <vector>

#include "model/edits/NoteState.h"

namespace quib {

struct NoteClip {
    std::vector<Note> notes;  // positions from `origin`
    float origin = 0;         // steps: where it was copied
};

// The selection, else all. The origin is the grid line at or before the first start, so that pasting
// on the same grid keeps the rhythm; the first start itself when `grid` is not above 0.
NoteClip CopyNotes(const NoteState& from, double grid);
// Adds the clip with its origin at `position` (steps) and selects what it added. A clip that would
// begin before 0 or end too far is moved as a whole. At clip.origin it lands where it came from.
NoteState PasteNotes(const NoteState& from, const NoteClip& clip, float position);

}  // namespace quib
