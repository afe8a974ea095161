// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CNoteTake.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "document/CChanges.h"
#include "model/edits/NoteEdits.h"
#include "model/edits/NoteShaping.h"

namespace quib {

namespace {

// Not beyond the end of the pattern, where the next pass begins.
float LengthAt(std::int64_t sample, std::int64_t begun, float stepSamples, const Note& note, const CPattern& pattern) {
    const auto length = static_cast<float>(static_cast<double>(sample - begun) / static_cast<double>(stepSamples));
    const float room = static_cast<float>(pattern.LoopLength()) - note.position;
    return std::max(kShortestNote, std::min(length, room));
}

}  // namespace

CNoteTake::Track& CNoteTake::TrackOf(const std::shared_ptr<CInstrument>& instrument, int pattern) {
    const auto known = std::find_if(tracks.begin(), tracks.end(), [&](const Track& track) {
        return track.instrument == instrument && track.pattern == pattern;
    });
    if (known != tracks.end()) return *known;
    const auto content = instrument->patterns[static_cast<std::size_t>(pattern)].ForEdit();
    tracks.push_back({instrument, pattern, content, content, {}, {}});
    return tracks.back();
}

void CNoteTake::Take(const EngineNotice& played, const std::shared_ptr<CInstrument>& instrument,
                     const NoteTakeOptions& options) {
    End(played);  // also of a key that is struck again
    const bool begins = played.lane > 0 && played.x >= 0 && played.y > 0;
    if (!begins || !instrument || played.pattern < 0 || played.pattern >= kPatternCount) return;
    Begin(TrackOf(instrument, played.pattern), played, options);
}

void CNoteTake::Begin(Track& track, const EngineNotice& played, const NoteTakeOptions& options) {
    Note note{played.x, kShortestNote, played.value, played.lane};
    note.position = Quantised(note, {options.grid, options.strength, false}).position;
    const double ahead = std::max(0.0, static_cast<double>(note.position - played.x) * static_cast<double>(played.y));
    if (note.position >= static_cast<float>(track.before->LoopLength())) note.position = 0;
    track.notes.push_back({note, played.sample, played.y, played.sample + std::llround(ahead)});
}

void CNoteTake::End(const EngineNotice& played) {
    for (Track& track : tracks) {
        if (track.instrument->Id() != played.instrument) continue;
        for (Recorded& entry : track.notes) {
            if (!entry.held || entry.note.key != played.value) continue;
            entry.held = false;
            entry.note.length = LengthAt(played.sample, entry.begun, entry.stepSamples, entry.note, *track.before);
        }
    }
}

void CNoteTake::Sweep(const std::shared_ptr<CInstrument>& instrument, int pattern, int step) {
    Track& track = TrackOf(instrument, pattern);
    for (Track& other : tracks) {
        if (&other != &track) other.lastStep = -1;
    }
    const int length = track.before->LoopLength();
    if (step < 0 || step >= length) return;
    track.swept.resize(static_cast<std::size_t>(length));
    int from = track.lastStep < 0 ? step : track.lastStep;
    track.lastStep = step;
    for (; from != step; from = (from + 1) % length) track.swept[static_cast<std::size_t>(from)] = true;
    track.swept[static_cast<std::size_t>(step)] = true;
}

// What was there, without what was replaced, with what was played.
std::shared_ptr<const CPattern> CNoteTake::Written(Track& track, std::int64_t rendered) {
    NoteSelection replaced;
    for (const std::uint32_t index : track.before->NotesByStart()) {
        const int step = StepOfPosition(track.before->Notes()[index].position);
        if (step < static_cast<int>(track.swept.size()) && track.swept[static_cast<std::size_t>(step)])
            replaced.push_back(index);
    }
    std::ranges::sort(replaced);
    std::vector<Note> added;
    for (const Recorded& entry : track.notes) {
        if (entry.due <= rendered) added.push_back(entry.note);
    }
    const NoteState kept = RemoveNotes({track.before, {}}, replaced);
    track.firstRecorded = kept.Notes().size();
    return AddNotes(kept, added).pattern;
}

std::size_t CNoteTake::FirstRecorded(const std::shared_ptr<const CPattern>& notes) const {
    const auto known = std::ranges::find(tracks, notes, &Track::shown);
    return known == tracks.end() ? std::numeric_limits<std::size_t>::max() : known->firstRecorded;
}

void CNoteTake::Rebase() {
    for (Track& track : tracks) {
        track.before = track.shown = track.instrument->patterns[static_cast<std::size_t>(track.pattern)].ForEdit();
        track.firstRecorded = track.shown->Notes().size();
    }
}

bool CNoteTake::IsDisturbed() const {
    return std::any_of(tracks.begin(), tracks.end(), [](const Track& track) {
        return track.instrument->patterns[static_cast<std::size_t>(track.pattern)].ForEdit() != track.shown;
    });
}

void CNoteTake::Publish(std::int64_t rendered, std::int64_t heard) {
    for (Track& track : tracks) {
        for (Recorded& entry : track.notes) {
            if (!entry.held) continue;
            entry.note.length = LengthAt(heard, entry.begun, entry.stepSamples, entry.note, *track.before);
        }
        const auto next = Written(track, rendered);
        if (next->Notes() == track.shown->Notes()) continue;
        track.shown = next;
        gesture.Publish(PatternPlace(track.instrument, track.pattern), next);
    }
}

void CNoteTake::Finish(const QString& name, std::int64_t heard) {
    if (!IsDisturbed()) Publish(std::numeric_limits<std::int64_t>::max(), heard);
    gesture.Finish(name);
    tracks.clear();
}

}  // namespace quib
