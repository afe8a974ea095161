// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/NoteClip.h"

#include <algorithm>
#include <cmath>

#include "model/edits/CNoteDraft.h"
#include "model/edits/NoteEdits.h"
#include "model/edits/NoteSnap.h"

namespace quib {

namespace {

bool StartsBefore(const Note& a, const Note& b) noexcept { return a.position < b.position; }

}  // namespace

NoteClip CopyNotes(const NoteState& from, double grid) {
    NoteClip clip{CNoteDraft(from).All(SelectedOrAll(from))};
    if (clip.notes.empty()) return clip;
    const float first = std::min_element(clip.notes.begin(), clip.notes.end(), StartsBefore)->position;
    clip.origin = SnapDown(first, grid);
    for (Note& note : clip.notes) note.position -= clip.origin;
    return clip;
}

NoteState PasteNotes(const NoteState& from, const NoteClip& clip, float position) {
    if (clip.notes.empty() || !std::isfinite(position)) return from;
    const auto [first, last] = std::minmax_element(clip.notes.begin(), clip.notes.end(), StartsBefore);
    position = std::max(std::min(position, kFarthestStart - last->position), -first->position);
    std::vector<Note> notes = clip.notes;
    for (Note& note : notes) note.position += position;
    return AddSelected(from, notes);
}

}  // namespace quib
