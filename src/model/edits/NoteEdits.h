// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Adding, removing, moving and stressing notes. Without a word about it an edit means the selection
// alone, keeps it selected, and does nothing when it is empty. Drags call these with the state at the
// press and the whole way of the mouse, so that coming back undoes what happened on the way.

#include <span>

#include "model/edits/NoteState.h"

namespace quib {

// Appends notes, made to fit the limits, leaving the selection as it is.
NoteState AddNotes(const NoteState& from, std::span<const Note> notes);
NoteState AddNote(const NoteState& from, const Note& note);
// The same, and selects exactly the new ones.
NoteState AddSelected(const NoteState& from, std::span<const Note> notes);

NoteState RemoveNotes(const NoteState& from, std::span<const std::uint32_t> notes);
NoteState RemoveSelected(const NoteState& from);

// Moves the selection as one block, which stops at the edges and keeps its shape.
NoteState MoveNotes(const NoteState& from, float steps, int keys);
// Leaves the notes where they are and selects copies of them, moved likewise.
NoteState MoveCopies(const NoteState& from, float steps, int keys);
// The selection, else all, up by `keys` semitones. Changes nothing when a note would leave the keys,
// since a shorter way would be another interval.
NoteState TransposeNotes(const NoteState& from, int keys);

// Moves the ends by `steps`. No note becomes shorter than `minimum`; one that was shorter stays as it was.
NoteState ResizeNotes(const NoteState& from, float steps, float minimum);
// Gives every note the same length.
NoteState SetNoteLength(const NoteState& from, float length);

// Velocities are clamped to 0 to 127, each note for itself.
NoteState SetVelocity(const NoteState& from, int velocity);
NoteState ShiftVelocity(const NoteState& from, int change);
// From `first` at the first start to `last` at the last one, straight between.
NoteState RampVelocity(const NoteState& from, int first, int last);

// A stroke of the mouse over the velocity lane, in either direction.
struct VelocityStroke {
    float fromStep = 0;
    int fromVelocity = 0;
    float toStep = 0;
    int toVelocity = 0;
};
// Gives the notes that start on the stroke its height there: the selected ones, else all.
NoteState PaintVelocity(const NoteState& from, const VelocityStroke& stroke);

}  // namespace quib
