// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/PatternEdits.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>

#include "model/edits/CNoteDraft.h"
#include "model/edits/NoteEdits.h"
#include "model/edits/NoteSnap.h"

namespace quib {

namespace {

// Around within `length` steps; what comes so near to the end that files would keep the end begins again.
float Wrapped(double position, int length) noexcept {
    double rest = std::fmod(position, length);
    if (rest < 0) rest += length;
    return length - rest < kPositionTolerance / 2 ? 0.0F : static_cast<float>(rest);
}

// Where the notes of a row start, ascending.
std::vector<float> StartsOfRow(const CPattern& pattern, int key) {
    std::vector<float> starts;
    for (const std::uint32_t index : pattern.NotesByStart()) {
        const Note& note = pattern.Notes()[index];
        if (note.key == key) starts.push_back(note.position);
    }
    return starts;
}

bool HasStartAt(const std::vector<float>& ascending, float position) {
    const auto next = std::lower_bound(ascending.begin(), ascending.end(), position);
    return (next != ascending.end() && IsSamePosition(*next, position)) ||
           (next != ascending.begin() && IsSamePosition(*std::prev(next), position));
}

NoteSelection OfStep(const CPattern& pattern, int step) {
    if (step < 0) return {};
    const auto notes = pattern.NotesOfStep(step);
    return {notes.begin(), notes.end()};
}

}  // namespace

NoteState ClearNotes(const NoteState& from) {
    CNoteDraft draft(from);
    NoteSelection all(from.Notes().size());
    std::iota(all.begin(), all.end(), 0U);
    draft.Remove(all);
    return draft.Finish();
}

NoteState SetStepCount(const NoteState& from, int steps) {
    CNoteDraft draft(from);
    draft.SetStepCount(std::clamp(steps, 1, kMaximumStepCount));
    return draft.Finish();
}

NoteState DoublePattern(const NoteState& from) {
    const int length = from.pattern->LoopLength();
    if (length > kMaximumStepCount / 2) return from;
    const auto later = static_cast<float>(length);
    CNoteDraft draft(from);
    for (const std::uint32_t index : SelectedOrAll({from.pattern, {}})) {
        Note note = draft.At(index);
        const bool repeated = note.position < later;
        note.position += later;
        if (repeated) {
            draft.Append(note);
        } else if (note.position <= kFarthestStart) {
            draft.Replace(index, note);
        }
    }
    draft.SetStepCount(2 * length);
    return draft.Finish();
}

NoteState HalvePattern(const NoteState& from) { return SetStepCount(from, from.pattern->LoopLength() / 2); }

NoteState ShiftWrapped(const NoteState& from, float steps) {
    if (!std::isfinite(steps) || steps == 0.0F) return from;
    const int length = from.pattern->LoopLength();
    CNoteDraft draft(from);
    for (const std::uint32_t index : SelectedOrAll(from)) {
        Note note = draft.At(index);
        if (note.position >= static_cast<float>(length)) continue;
        note.position = Wrapped(static_cast<double>(note.position) + steps, length);
        draft.Replace(index, note);
    }
    return draft.Finish();
}

RowFill EveryBeat(float stepsPerBeat) noexcept { return {.first = 0, .every = stepsPerBeat}; }

RowFill OffBeats(float stepsPerBeat) noexcept { return {.first = stepsPerBeat / 2, .every = stepsPerBeat}; }

NoteState FillRow(const NoteState& from, int key, const RowFill& fill) {
    const double end = from.pattern->LoopLength() - static_cast<double>(kPositionTolerance);
    const double count = std::ceil((end - fill.first) / fill.every);
    if (key < 0 || key > kHighestKey || !(fill.first >= 0) || !(fill.every >= kShortestNote) ||
        !(count <= kMaximumStepCount))
        return from;
    const std::vector<float> starts = StartsOfRow(*from.pattern, key);
    std::vector<Note> notes;
    for (int number = 0; number < count; ++number) {
        const auto position = static_cast<float>(fill.first + static_cast<double>(fill.every) * number);
        if (!HasStartAt(starts, position)) notes.push_back({position, fill.length, key, fill.velocity});
    }
    return AddNotes(from, notes);
}

NoteState ClearRow(const NoteState& from, int key) {
    NoteSelection row = SelectedOrAll({from.pattern, {}});
    std::erase_if(row, [&](std::uint32_t note) { return from.Notes()[note].key != key; });
    return RemoveNotes(from, row);
}

int NearestEarlierKey(const CPattern& pattern, int step, int otherwise) {
    const auto order = pattern.NotesByStart();
    const auto startsEarlier = [&](std::uint32_t note) {
        return pattern.Notes()[note].position < static_cast<float>(step);
    };
    auto place = std::partition_point(order.begin(), order.end(), startsEarlier);
    while (place != order.begin()) {
        const Note& note = pattern.Notes()[*--place];
        if (IsPlayable(note)) return note.key;
    }
    return otherwise;
}

int LowestKey(const CPattern& pattern, int otherwise) {
    int lowest = kHighestKey + 1;
    for (const Note& note : pattern.Notes()) {
        if (IsPlayable(note)) lowest = std::min(lowest, note.key);
    }
    return lowest > kHighestKey ? otherwise : lowest;
}

NoteState SetStep(const NoteState& from, int step, const Note& model) {
    const auto position = static_cast<float>(step);
    if (StepOfPosition(position) != step || !from.pattern->NotesOfStep(step).empty()) return from;
    Note note = model;
    note.position = position;
    note.key = NearestEarlierKey(*from.pattern, step, model.key);
    return AddNote(from, note);
}

NoteState ClearStep(const NoteState& from, int step) { return RemoveNotes(from, OfStep(*from.pattern, step)); }

NoteState SelectStep(const NoteState& from, int step) { return Select(from, OfStep(*from.pattern, step)); }

}  // namespace quib
