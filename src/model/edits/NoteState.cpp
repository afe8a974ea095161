// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/NoteState.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>
#include <utility>

#include "model/edits/NoteSnap.h"

namespace quib {

bool IsPlayable(const Note& note) noexcept {
    return note.key >= 0 && note.key <= kHighestKey && StepOfPosition(note.position) >= 0;
}

Note Repaired(Note note) noexcept {
    // Adding 0 leaves no negative zero, which files would show.
    note.position = std::isnan(note.position) ? 0.0F : std::clamp(note.position, 0.0F, kFarthestStart) + 0.0F;
    const bool hasLength = note.length >= kPositionTolerance;
    note.length = hasLength ? std::min(note.length, static_cast<float>(kMaximumStepCount)) : kShortestNote;
    note.key = std::clamp(note.key, 0, kHighestKey);
    note.velocity = std::clamp(note.velocity, 0, kHighestVelocity);
    return note;
}

bool IsSelected(const NoteSelection& selection, std::uint32_t note) noexcept {
    // Where every note up to this one is selected, it stands at its own place.
    if (note < selection.size() && selection[note] == note) return true;
    return std::binary_search(selection.begin(), selection.end(), note);
}

NoteState Select(const NoteState& from, NoteSelection notes) {
    if (!std::is_sorted(notes.begin(), notes.end())) std::sort(notes.begin(), notes.end());
    notes.erase(std::unique(notes.begin(), notes.end()), notes.end());
    const auto beyond = std::lower_bound(notes.begin(), notes.end(), from.Notes().size());
    notes.erase(beyond, notes.end());
    return {from.pattern, std::move(notes)};
}

NoteState AddToSelection(const NoteState& from, std::span<const std::uint32_t> notes) {
    NoteSelection all = from.selection;
    all.insert(all.end(), notes.begin(), notes.end());
    return Select(from, std::move(all));
}

NoteState ToggleSelected(const NoteState& from, std::uint32_t note) {
    if (!IsSelected(from, note)) return AddToSelection(from, std::span(&note, 1));
    NoteState next = from;
    std::erase(next.selection, note);
    return next;
}

NoteState SelectAll(const NoteState& from) { return {from.pattern, SelectedOrAll({from.pattern, {}})}; }

NoteSelection SelectedOrAll(const NoteState& state) {
    if (!state.selection.empty()) return Select(state, state.selection).selection;
    NoteSelection all(state.Notes().size());
    std::iota(all.begin(), all.end(), 0U);
    std::erase_if(all, [&](std::uint32_t note) { return !IsPlayable(state.Notes()[note]); });
    return all;
}

std::optional<NoteSpan> SelectionSpan(const NoteState& state) {
    const NoteSelection selected = Select(state, state.selection).selection;
    if (selected.empty()) return std::nullopt;
    NoteSpan span{kFarthestStart, 0};
    for (const std::uint32_t index : selected) {
        const Note note = Repaired(state.Notes()[index]);
        span.start = std::min(span.start, note.position);
        span.end = std::max(span.end, note.position + note.length);
    }
    return span;
}

NoteSelection NotesStartingIn(const CPattern& pattern, float from, float to) {
    const auto order = pattern.NotesByStart();
    const auto placeOf = [&](float limit) {
        return std::partition_point(order.begin(), order.end(),
                                    [&](std::uint32_t note) { return pattern.Notes()[note].position < limit; });
    };
    NoteSelection found;
    if (!(from < to)) return found;
    std::copy_if(placeOf(from), placeOf(to), std::back_inserter(found),
                 [&](std::uint32_t note) { return IsPlayable(pattern.Notes()[note]); });
    std::sort(found.begin(), found.end());
    return found;
}

}  // namespace quib
