// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/NoteEdits.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "model/edits/CNoteDraft.h"
#include "model/edits/NoteSnap.h"

namespace quib {

namespace {

struct BlockMove {
    float steps;
    int keys;

    Note operator()(Note note) const noexcept {
        note.position += steps;
        note.key += keys;
        return note;
    }
    bool IsNone() const noexcept { return steps == 0.0F && keys == 0; }
};

// As much of the way as all of `notes`, at least one, can go.
BlockMove LimitedMove(const std::vector<Note>& notes, float steps, int keys) {
    const auto [first, last] = std::minmax_element(
        notes.begin(), notes.end(), [](const Note& a, const Note& b) { return a.position < b.position; });
    const auto [lowest, highest] =
        std::minmax_element(notes.begin(), notes.end(), [](const Note& a, const Note& b) { return a.key < b.key; });
    if (std::isnan(steps)) steps = 0;
    return {std::clamp(steps, -first->position, kFarthestStart - last->position),
            std::clamp(keys, -lowest->key, kHighestKey - highest->key)};
}

// Puts `edit(note)` in the place of each of `notes`, which are notes of the draft.
template <class Edit>
NoteState EditEach(CNoteDraft&& draft, const NoteSelection& notes, Edit&& edit) {
    for (const std::uint32_t note : notes) draft.Replace(note, edit(draft.At(note)));
    return draft.Finish();
}

template <class Edit>
NoteState EditSelected(CNoteDraft&& draft, Edit&& edit) {
    const NoteSelection notes = draft.Selection();
    return EditEach(std::move(draft), notes, edit);
}

// An edit that puts `velocity(note)` into a note.
template <class Velocity>
auto WithVelocity(Velocity velocity) {
    return [velocity](Note note) {
        note.velocity = velocity(note);
        return note;
    };
}

NoteSelection Added(const NoteState& from, std::size_t count) {
    NoteSelection added(count);
    std::iota(added.begin(), added.end(), static_cast<std::uint32_t>(from.Notes().size()));
    return added;
}

// The height of a stroke from left to right at `position`, which may lie a little outside.
int VelocityAt(const VelocityStroke& stroke, float position) noexcept {
    const float width = stroke.toStep - stroke.fromStep;
    if (!(width > 0)) return stroke.toVelocity;
    const float share = std::clamp((position - stroke.fromStep) / width, 0.0F, 1.0F);
    const auto height = static_cast<float>(stroke.toVelocity - stroke.fromVelocity);
    return stroke.fromVelocity + static_cast<int>(std::lround(share * height));
}

}  // namespace

NoteState AddNotes(const NoteState& from, std::span<const Note> notes) {
    CNoteDraft draft(from);
    for (const Note& note : notes) draft.Append(note);
    return draft.Finish();
}

NoteState AddNote(const NoteState& from, const Note& note) { return AddNotes(from, std::span(&note, 1)); }

NoteState AddSelected(const NoteState& from, std::span<const Note> notes) {
    if (notes.empty()) return from;
    NoteState next = AddNotes(from, notes);
    next.selection = Added(from, notes.size());
    return next;
}

NoteState RemoveNotes(const NoteState& from, std::span<const std::uint32_t> notes) {
    CNoteDraft draft(from);
    draft.Remove(notes);
    return draft.Finish();
}

NoteState RemoveSelected(const NoteState& from) { return RemoveNotes(from, from.selection); }

NoteState MoveNotes(const NoteState& from, float steps, int keys) {
    CNoteDraft draft(from);
    if (draft.Selection().empty()) return from;
    const BlockMove move = LimitedMove(draft.All(draft.Selection()), steps, keys);
    return EditSelected(std::move(draft), move);
}

NoteState MoveCopies(const NoteState& from, float steps, int keys) {
    CNoteDraft draft(from);
    std::vector<Note> copies = draft.All(draft.Selection());
    if (copies.empty()) return from;
    const BlockMove move = LimitedMove(copies, steps, keys);
    if (move.IsNone()) return from;
    std::transform(copies.begin(), copies.end(), copies.begin(), move);
    return AddSelected(from, copies);
}

NoteState TransposeNotes(const NoteState& from, int keys) {
    const NoteSelection meant = SelectedOrAll(from);
    const bool fits = std::all_of(meant.begin(), meant.end(), [&](std::uint32_t note) {
        const int key = Repaired(from.Notes()[note]).key;
        return keys >= -key && keys <= kHighestKey - key;
    });
    return fits ? EditEach(CNoteDraft(from), meant, BlockMove{0, keys}) : from;
}

NoteState ResizeNotes(const NoteState& from, float steps, float minimum) {
    return EditSelected(CNoteDraft(from), [=](Note note) {
        const float least = std::min(note.length, std::max(minimum, kPositionTolerance));
        note.length = std::max(least, note.length + steps);
        return note;
    });
}

NoteState SetNoteLength(const NoteState& from, float length) {
    return EditSelected(CNoteDraft(from), [=](Note note) {
        note.length = length;
        return note;
    });
}

NoteState SetVelocity(const NoteState& from, int velocity) {
    return EditSelected(CNoteDraft(from), WithVelocity([=](const Note&) { return velocity; }));
}

NoteState ShiftVelocity(const NoteState& from, int change) {
    change = std::clamp(change, -kHighestVelocity, kHighestVelocity);
    return EditSelected(CNoteDraft(from), WithVelocity([=](const Note& note) { return note.velocity + change; }));
}

NoteState RampVelocity(const NoteState& from, int first, int last) {
    CNoteDraft draft(from);
    const std::vector<Note> notes = draft.All(draft.Selection());
    if (notes.empty()) return from;
    const auto [start, end] = std::minmax_element(notes.begin(), notes.end(),
                                                  [](const Note& a, const Note& b) { return a.position < b.position; });
    const VelocityStroke ramp{start->position, first, end->position, last};
    return EditSelected(std::move(draft),
                        WithVelocity([&](const Note& note) { return VelocityAt(ramp, note.position); }));
}

NoteState PaintVelocity(const NoteState& from, const VelocityStroke& stroke) {
    VelocityStroke ordered = stroke;
    if (stroke.fromStep > stroke.toStep) {
        std::swap(ordered.fromStep, ordered.toStep);
        std::swap(ordered.fromVelocity, ordered.toVelocity);
    }
    const auto edit = WithVelocity([&](const Note& note) {
        const bool painted = (note.position >= ordered.fromStep || IsSamePosition(note.position, ordered.fromStep)) &&
                             (note.position <= ordered.toStep || IsSamePosition(note.position, ordered.toStep));
        return painted ? VelocityAt(ordered, note.position) : note.velocity;
    });
    return EditEach(CNoteDraft(from), SelectedOrAll(from), edit);
}

}  // namespace quib
