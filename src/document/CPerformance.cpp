// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CPerformance.h"

#include <algorithm>

#include "model/edits/PlaylistEdits.h"
#include "texts/Texts.h"

namespace quib {

void CPerformance::Tick() {
    const PlayPicture& picture = context.audio.Picture();
    const bool wanted = armed.IsOn() && picture.playing && !context.audio.settings.songMode.IsOn();
    if (running && !wanted) Finish();
    if (!running && wanted) Begin(picture);
    if (running) Follow(picture);
}

void CPerformance::Abandon() {
    running = false;
    tracks.clear();
}

void CPerformance::Begin(const PlayPicture& picture) {
    running = true;
    base = picture.globalStep;
    steps = 0;
    tracks.clear();
}

void CPerformance::Follow(const PlayPicture& picture) {
    if (picture.soundingStep < 0) return;
    steps = std::max(steps, picture.soundingStep + 1);
    for (std::size_t index = 0; index < picture.instrumentCount; ++index) {
        const InstrumentPicture& shown = picture.instruments[index];
        auto track = std::find_if(tracks.begin(), tracks.end(),
                                  [&shown](const Track& known) { return known.instrument == shown.id; });
        if (track == tracks.end()) track = tracks.insert(track, {shown.id, -1, 0, {}});
        FollowTrack(*track, shown, picture.soundingStep);
    }
}

void CPerformance::FollowTrack(Track& track, const InstrumentPicture& shown, int now) {
    const auto instrument = context.InstrumentById(track.instrument);
    if (!instrument || shown.pattern < 0 || shown.pattern >= kPatternCount || shown.step < 0) return;
    const CPattern& pattern = *instrument->patterns[static_cast<std::size_t>(shown.pattern)].ForEdit();
    const int origin = std::max(0, now - shown.step);
    const bool goesOn = shown.pattern == track.pattern && (origin - track.origin) % pattern.LoopLength() == 0;
    if (goesOn) return;
    track.pattern = shown.pattern;
    track.origin = origin;
    const bool silent = pattern.Notes().empty();
    if (silent && track.played.empty()) return;
    std::erase_if(track.played, [this, origin](const PlaylistEntry& entry) { return entry.start >= base + origin; });
    track.played.push_back({shown.pattern, base + origin, silent ? 0 : 1});
}

Playlist CPerformance::Recorded(const CInstrument& instrument, const Track& track) const {
    PlaylistState state;
    Playlist items;
    for (const PlaylistEntry& entry : *instrument.playlist.ForEdit()) {
        if (entry.start < base || entry.start >= base + steps) items.push_back(entry);
    }
    items.insert(items.end(), track.played.begin(), track.played.end());
    const auto last = static_cast<std::uint32_t>(items.size() - 1);
    state.playlist = std::make_shared<const Playlist>(items);
    if (items.back().repeat == 0) return items;
    const auto ended = SetItemEnd(state, SongPatternsOf(instrument), last, base + steps);
    // Shorter than its pattern, the last one plays to the pattern's end.
    return ended ? ended->Items() : items;
}

void CPerformance::Finish() {
    running = false;
    CGesture gesture(context.changes);
    for (const Track& track : tracks) {
        const auto instrument = context.InstrumentById(track.instrument);
        if (!instrument || track.played.empty()) continue;
        gesture.Publish(PlaylistPlace(instrument), std::make_shared<const Playlist>(Recorded(*instrument, track)));
    }
    gesture.Finish(Text("Record performance"));
    tracks.clear();
}

}  // namespace quib
