// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Edits of a pattern as a whole: its length, its contents, one row of it, the boxes of its steps.
// Notes beyond the length stay where they are unless it says otherwise.

#include "model/edits/NoteState.h"

namespace quib {

// No note left; the length stays.
NoteState ClearNotes(const NoteState& from);
// 1 to kMaximumStepCount; the step at which a repeat starts stays inside.
NoteState SetStepCount(const NoteState& from, int steps);
// Twice the length with the contents repeated; notes beyond the former length move on with the end.
// Changes nothing when the length would be too great.
NoteState DoublePattern(const NoteState& from);
// Half the length, rounded down, at least 1.
NoteState HalvePattern(const NoteState& from);
// The selection, else all, later by `steps` (negative: earlier), around within the length.
NoteState ShiftWrapped(const NoteState& from, float steps);

// Where the notes of a row go, all in steps: the first one, then one `every` so many.
struct RowFill {
    float first = 0;
    float every = 4;  // at least kShortestNote
    float length = 1;
    int velocity = 100;
};
RowFill EveryBeat(float stepsPerBeat) noexcept;
RowFill OffBeats(float stepsPerBeat) noexcept;
// Adds the notes to the row of `key` up to the pattern's length, but none where one of the row starts already.
NoteState FillRow(const NoteState& from, int key, const RowFill& fill);
NoteState ClearRow(const NoteState& from, int key);

// The key of the note that starts last before `step`; of a chord the one added last. `otherwise` when there is none.
int NearestEarlierKey(const CPattern& pattern, int step, int otherwise);
// The lowest key of the playable notes.
int LowestKey(const CPattern& pattern, int otherwise);
// Adds `model` at `step`, with the key of the nearest earlier note, else its own. A step in which a note
// starts stays as it is, as does a step outside of the pattern's reach.
NoteState SetStep(const NoteState& from, int step, const Note& model);
// Removes the notes that start in `step`.
NoteState ClearStep(const NoteState& from, int step);
// Selects the notes that start in `step`: their velocity and length are then edited like any other.
NoteState SelectStep(const NoteState& from, int step);

}  // namespace quib
