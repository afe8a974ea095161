// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/NoteShaping.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "model/edits/CNoteDraft.h"
#include "model/edits/NoteEdits.h"
#include "model/edits/NoteSnap.h"

namespace quib {

namespace {

float EndOf(const Note& note) noexcept { return note.position + note.length; }

// Well mixed bits of a counter (the finaliser of SplitMix64), equal on every machine.
std::uint64_t Mixed(std::uint64_t value) noexcept {
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31);
}

// Draw number `number` of the row that belongs to `seed`: -1 to below 1.
float Draw(std::uint32_t seed, std::uint64_t number) noexcept {
    const std::uint64_t bits = Mixed(Mixed(seed) + number) >> 40;
    return static_cast<float>(bits) / static_cast<float>(1 << 23) - 1.0F;
}

NoteSpan SpanOf(const std::vector<Note>& notes) {
    NoteSpan span{notes.front().position, 0};
    for (const Note& note : notes) {
        span.start = std::min(span.start, note.position);
        span.end = std::max(span.end, EndOf(note));
    }
    return span;
}

// Puts `edit(note)` in the place of each note that is meant: of the selection, else of all.
template <class Edit>
NoteState EditMeant(const NoteState& from, Edit&& edit) {
    CNoteDraft draft(from);
    for (const std::uint32_t note : SelectedOrAll(from)) draft.Replace(note, edit(draft.At(note)));
    return draft.Finish();
}

// The notes that are meant, by start and then by key.
NoteSelection MeantByStart(const NoteState& from, const CNoteDraft& draft) {
    NoteSelection meant = SelectedOrAll(from);
    std::stable_sort(meant.begin(), meant.end(), [&](std::uint32_t a, std::uint32_t b) {
        const Note first = draft.At(a);
        const Note second = draft.At(b);
        return std::pair(first.position, first.key) < std::pair(second.position, second.key);
    });
    return meant;
}

// One past the last of the notes that start together with the one at `first`.
std::size_t EndOfChord(const CNoteDraft& draft, const NoteSelection& byStart, std::size_t first) {
    const float start = draft.At(byStart[first]).position;
    std::size_t end = first + 1;
    while (end < byStart.size() && IsSamePosition(draft.At(byStart[end]).position, start)) ++end;
    return end;
}

// Cuts the note at each of the ascending `positions`; the pieces after the first are added to `pieces`.
void CutNote(CNoteDraft& draft, std::uint32_t index, std::span<const float> positions, NoteSelection& pieces) {
    Note rest = draft.At(index);
    std::uint32_t current = index;
    for (const float cut : positions) {
        const float before = cut - rest.position;
        if (!(before >= kShortestNote) || !(rest.length - before >= kShortestNote)) continue;
        Note piece = rest;
        piece.length = before;
        draft.Replace(current, piece);
        rest.position = cut;
        rest.length -= before;
        current = draft.Append(rest);
        pieces.push_back(current);
    }
}

NoteState CutNotes(const NoteState& from, const NoteSelection& notes, std::span<const float> positions) {
    CNoteDraft draft(from);
    NoteSelection selected = draft.Selection();
    for (const std::uint32_t note : notes) {
        NoteSelection pieces;
        CutNote(draft, note, positions, pieces);
        if (IsSelected(from, note)) selected.insert(selected.end(), pieces.begin(), pieces.end());
    }
    draft.Select(std::move(selected));
    return draft.Finish();
}

}  // namespace

Note Quantised(const Note& note, const QuantiseSettings& settings) noexcept {
    const double grid = settings.grid;
    const float strength = settings.strength > 0 ? std::min(settings.strength, 1.0F) : 0.0F;
    if (!(grid > 0) || strength == 0.0F) return note;
    Note next = Repaired(note);
    const float end = EndOf(next);
    const float line = SnapNearest(next.position, grid);
    // From the line on the way back, so that full strength lies exactly on it.
    next.position = line + (1.0F - strength) * (next.position - line);
    if (!settings.ends) return next;
    const float endLine = std::max(SnapNearest(end, grid), SnapNearest(line + static_cast<float>(grid), grid));
    next.length = endLine + (1.0F - strength) * (end - endLine) - next.position;
    return next;
}

NoteState QuantiseNotes(const NoteState& from, const QuantiseSettings& settings) {
    return EditMeant(from, [&](const Note& note) { return Quantised(note, settings); });
}

NoteState HumaniseNotes(const NoteState& from, const HumaniseSettings& settings) {
    if (!std::isfinite(settings.time)) return from;
    std::uint64_t number = 0;
    const auto reach = static_cast<float>(std::clamp(settings.velocity, 0, kHighestVelocity));
    return EditMeant(from, [&](Note note) {
        note.position += settings.time * Draw(settings.seed, number++);
        const int change = static_cast<int>(std::lround(reach * Draw(settings.seed, number++)));
        if (note.velocity > 0) note.velocity = std::max(1, note.velocity + change);
        return note;
    });
}

NoteState DuplicateNotes(const NoteState& from, double grid) {
    const auto span = SelectionSpan(from);
    if (!span) return from;
    const float width = std::max(SnapUp(span->end - span->start, grid), static_cast<float>(grid));
    NoteState next = MoveCopies(from, width, 0);
    // A block that stopped at the far edge would lie over itself.
    const auto copied = SelectionSpan(next);
    return IsSamePosition(copied->start, span->start + width) ? next : from;
}

NoteState JoinNotes(const NoteState& from) {
    constexpr std::uint32_t kNone = ~0U;
    CNoteDraft draft(from);
    std::array<std::uint32_t, kHighestKey + 1> firstOfKey;
    std::array<float, kHighestKey + 1> endOfKey{};
    firstOfKey.fill(kNone);
    NoteSelection joined;
    for (const std::uint32_t index : draft.Selection()) {
        const Note note = draft.At(index);
        const auto key = static_cast<std::size_t>(note.key);
        std::uint32_t& first = firstOfKey[key];
        endOfKey[key] = std::max(endOfKey[key], EndOf(note));
        const bool isFirst = first == kNone || note.position < draft.At(first).position;
        const std::uint32_t later = isFirst ? std::exchange(first, index) : index;
        if (later != kNone) joined.push_back(later);
    }
    for (const std::uint32_t gone : joined) {
        const std::uint32_t first = firstOfKey[static_cast<std::size_t>(draft.At(gone).key)];
        Note note = draft.At(first);
        note.length = endOfKey[static_cast<std::size_t>(note.key)] - note.position;
        draft.Replace(first, note);
    }
    draft.Remove(joined);
    return draft.Finish();
}

NoteState SplitNotes(const NoteState& from, std::span<const float> positions) {
    std::vector<float> ascending(positions.begin(), positions.end());
    std::erase_if(ascending, [](float position) { return std::isnan(position); });
    std::sort(ascending.begin(), ascending.end());
    return CutNotes(from, SelectedOrAll(from), ascending);
}

NoteState SplitNote(const NoteState& from, std::uint32_t note, float position) {
    if (note >= from.Notes().size()) return from;
    return CutNotes(from, {note}, std::span(&position, 1));
}

NoteState LegatoNotes(const NoteState& from) {
    CNoteDraft draft(from);
    const NoteSelection byStart = MeantByStart(from, draft);
    std::size_t next = 0;
    for (std::size_t first = 0; first < byStart.size(); first = next) {
        next = EndOfChord(draft, byStart, first);
        if (next == byStart.size()) break;
        const float end = draft.At(byStart[next]).position;
        for (std::size_t place = first; place < next; ++place) {
            Note note = draft.At(byStart[place]);
            note.length = end - note.position;
            draft.Replace(byStart[place], note);
        }
    }
    return draft.Finish();
}

NoteState ReverseNotes(const NoteState& from) {
    const std::vector<Note> notes = CNoteDraft(from).All(SelectedOrAll(from));
    if (notes.empty()) return from;
    const NoteSpan span = SpanOf(notes);
    return EditMeant(from, [=](Note note) {
        note.position = span.start + (span.end - EndOf(note));
        return note;
    });
}

NoteState InvertNotes(const NoteState& from) {
    const std::vector<Note> notes = CNoteDraft(from).All(SelectedOrAll(from));
    if (notes.empty()) return from;
    const auto [low, high] =
        std::minmax_element(notes.begin(), notes.end(), [](const Note& a, const Note& b) { return a.key < b.key; });
    return EditMeant(from, [sum = low->key + high->key](Note note) {
        note.key = sum - note.key;
        return note;
    });
}

NoteState StrumNotes(const NoteState& from, float delay) {
    if (!std::isfinite(delay)) return from;
    CNoteDraft draft(from);
    const NoteSelection byStart = MeantByStart(from, draft);
    std::size_t next = 0;
    for (std::size_t first = 0; first < byStart.size(); first = next) {
        next = EndOfChord(draft, byStart, first);
        for (std::size_t place = first; place < next; ++place) {
            const std::size_t before = delay < 0 ? next - 1 - place : place - first;
            Note note = draft.At(byStart[place]);
            const float most = std::max(0.0F, note.length - kShortestNote);
            const float shift = std::min(static_cast<float>(before) * std::abs(delay), most);
            note.position += shift;
            note.length -= shift;
            draft.Replace(byStart[place], note);
        }
    }
    return draft.Finish();
}

}  // namespace quib
