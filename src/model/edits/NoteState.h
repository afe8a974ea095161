// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What an edit of notes starts from and gives: an immutable pattern with the notes selected in it.
// Every edit is a plain function from one state to the next, for any thread. It touches only the
// notes that it means: all others keep their bits, also odd ones from a file (overlapping, without
// length, out of range). An edited note comes out within the limits below. An edit that changes no
// note and no length gives back the very same pattern object, so that no undo step is made of it.

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "model/CPattern.h"
#include "model/MidiEvents.h"

namespace quib {

constexpr float kFarthestStart = kMaximumStepCount - 1;  // steps
// What an edited note without length gets, in steps.
constexpr float kShortestNote = 0.0625F;

// Indices into CPattern::Notes(), ascending, each once.
using NoteSelection = std::vector<std::uint32_t>;

struct NoteState {
    std::shared_ptr<const CPattern> pattern;  // never null
    NoteSelection selection;

    const std::vector<Note>& Notes() const noexcept { return pattern->Notes(); }
};

// A rectangle of the grid: [from, to) in steps, both keys included.
struct NoteArea {
    float from = 0;
    float to = 0;
    int lowestKey = 0;
    int highestKey = kHighestKey;
};

// Steps from the first start to the last end.
struct NoteSpan {
    float start = 0;
    float end = 0;
};

// Whether it can be heard: key in range and start in the reach of a pattern. Velocity 0 counts.
bool IsPlayable(const Note& note) noexcept;

// The note within the limits: start 0 to kFarthestStart, length above 0, key and velocity 0 to 127.
Note Repaired(Note note) noexcept;

bool IsSelected(const NoteSelection& selection, std::uint32_t note) noexcept;
inline bool IsSelected(const NoteState& state, std::uint32_t note) noexcept {
    return IsSelected(state.selection, note);
}
// Selects exactly `notes`, given in any order; indices beyond the list are left out.
NoteState Select(const NoteState& from, NoteSelection notes);
NoteState AddToSelection(const NoteState& from, std::span<const std::uint32_t> notes);
NoteState ToggleSelected(const NoteState& from, std::uint32_t note);
// Every playable note.
NoteState SelectAll(const NoteState& from);

// The notes that an edit of "the selection, else all" means: with none selected every playable one.
NoteSelection SelectedOrAll(const NoteState& state);
// Nothing when the selection is empty.
std::optional<NoteSpan> SelectionSpan(const NoteState& state);
// The playable notes that start in [from, to) steps; ascending indices.
NoteSelection NotesStartingIn(const CPattern& pattern, float from, float to);

}  // namespace quib
