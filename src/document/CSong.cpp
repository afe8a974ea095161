// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CSong.h"

#include <algorithm>

#include "texts/Texts.h"

namespace quib {

bool CSong::IsEmpty() const {
    const InstrumentList& list = context.Instruments();
    return std::all_of(list.begin(), list.end(), [](const auto& one) { return one->playlist.ForEdit()->empty(); });
}

int CSong::Steps() const {
    std::int32_t end = 0;
    for (const auto& instrument : context.Instruments()) {
        const auto playlist = instrument->playlist.ForEdit();
        if (playlist->empty()) continue;
        const PlaylistLength length = LengthOf(PlaylistSpans(*playlist, PatternLengthsForEdit(*instrument)));
        end = std::max({end, length.steps, length.endless ? contents.PlaylistSteps() : 0});
    }
    return end;
}

int CSong::StepsPerBar() const {
    const EngineSettings& settings = context.audio.settings;
    return std::max(1, settings.stepsPerBeat.Get()) * std::max(1, settings.beatsPerBar.Get());
}

StepRange CSong::Loop() const { return {context.audio.settings.loopStart.Get(), context.audio.settings.loopEnd.Get()}; }

void CSong::SetLoop(CGesture& gesture, StepRange range, bool on) const {
    EngineSettings& settings = context.audio.settings;
    const auto set = [this, &settings](StepRange next, float nextOn) {
        settings.loopStart.Set(next.first);
        settings.loopEnd.Set(next.end);
        settings.loopOn.Set(nextOn);
        context.changes.Tell({EChange::kValue});
    };
    gesture.Note(
        &settings.loopStart, [set, before = Loop(), wasOn = settings.loopOn.Get()] { set(before, wasOn); },
        [set, range, on] { set(range, on ? 1.0F : 0.0F); });
}

void CSong::SetLoop(StepRange range) {
    if (range.IsEmpty()) return;
    CGesture gesture(context.changes);
    SetLoop(gesture, range, true);
    gesture.Finish(Text("Loop"));
}

void CSong::ToggleLoop() {
    StepRange range = Loop();
    const StepRange selected = selectedRange ? selectedRange() : StepRange{};
    if (!IsLoopOn() && range.IsEmpty()) range = selected.IsEmpty() ? StepRange{0, Steps()} : selected;
    CGesture gesture(context.changes);
    SetLoop(gesture, range, !IsLoopOn());
    gesture.Finish(Text("Loop"));
}

template <class Edit>
void CSong::EditAll(const QString& name, const Edit& edit, int from, int way) {
    CGesture gesture(context.changes);
    SongMarkers moved;
    for (const SongMarker& marker : markers) {
        if (marker.step < from + std::min(way, 0)) moved.push_back(marker);
        if (marker.step >= from) moved.push_back({std::min(marker.step + way, kMaximumSongStep), marker.name});
    }
    if (moved != markers) PutMarkers(gesture, std::move(moved));
    for (const auto& instrument : context.Instruments()) {
        const auto before = instrument->playlist.ForEdit();
        Playlist next = edit(*instrument, *before);
        if (next == *before) continue;
        gesture.Publish(PlaylistPlace(instrument), std::make_shared<const Playlist>(std::move(next)));
    }
    gesture.Finish(name);
}

void CSong::InsertTime(int at, int steps) {
    EditAll(
        Text("Insert time"),
        [at, steps](const CInstrument& /*instrument*/, const Playlist& playlist) {
            return WithTimeInserted(playlist, at, steps);
        },
        at, steps);
}

void CSong::DeleteTime(StepRange range) {
    if (range.IsEmpty()) return;
    EditAll(
        Text("Delete time"),
        [range](const CInstrument& instrument, const Playlist& playlist) {
            return WithTimeDeleted(playlist, SongPatternsOf(instrument), range);
        },
        range.end, range.first - range.end);
}

void CSong::DoubleSection(StepRange range) {
    if (range.IsEmpty()) return;
    EditAll(
        Text("Duplicate section"),
        [range](const CInstrument& instrument, const Playlist& playlist) {
            return WithSectionDoubled(playlist, SongPatternsOf(instrument), range);
        },
        range.end, range.end - range.first);
}

void CSong::PutMarkers(CGesture& gesture, SongMarkers next) {
    const auto set = [this](const SongMarkers& list) {
        markers = list;
        context.changes.Tell({EChange::kValue});
    };
    gesture.Note(
        &markers, [set, before = markers] { set(before); }, [set, next = std::move(next)] { set(next); });
}

void CSong::SetMarker(int step, const QString& name) {
    // What would end a field of the file.
    const QString safe = QString(name).replace(QLatin1Char(';'), QLatin1Char(',')).trimmed();
    SongMarkers next = WithMarker(markers, step, safe.toStdString());
    if (next == markers) return;
    CGesture gesture(context.changes);
    PutMarkers(gesture, std::move(next));
    gesture.Finish(Text("Marker"));
}

void CSong::PutSelectedPatterns() {
    EditAll(Text("Put patterns into the song"), [](const CInstrument& instrument, const Playlist& playlist) {
        const int pattern = std::clamp(instrument.patternSelected.Get(), 0, kPatternCount - 1);
        if (SongPatternsOf(instrument).empty[static_cast<std::size_t>(pattern)]) return playlist;
        return Playlist{{pattern, 0, 1}};
    });
}

bool CSong::MakeUnique(const std::shared_ptr<CInstrument>& instrument, const PlaylistState& state) {
    if (state.selection.empty()) return true;
    const SongPatterns patterns = SongPatternsOf(*instrument);
    int free = -1;
    for (int pattern = kPatternCount - 1; pattern >= 0; --pattern) {
        const bool played = std::any_of(state.Items().begin(), state.Items().end(),
                                        [pattern](const PlaylistEntry& entry) { return entry.pattern == pattern; });
        if (patterns.empty[static_cast<std::size_t>(pattern)] && !played) free = pattern;
    }
    if (free < 0) return false;
    const int source = state.Items()[state.selection.front()].pattern;
    const CChanges::CMacro one(context.changes, Text("Make unique"));
    contents.CopyPattern(context.IndexOf(instrument->Id()), source, free);
    PlaylistSelection same;
    for (const std::uint32_t item : state.selection) {
        if (state.Items()[item].pattern == source) same.push_back(item);
    }
    contents.SetPlaylist(instrument->Id(), SetItemPattern(Select(state, same), free).playlist, Text("Make unique"));
    return true;
}

}  // namespace quib
