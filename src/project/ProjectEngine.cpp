// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ProjectEngine.h"

#include <algorithm>

namespace quib {

void PublishProject(const ProjectState& state, CAudio& audio) {
    for (const auto& instrument : state.instruments) audio.PrepareInstrument(*instrument);

    EngineSettings& settings = audio.settings;
    settings.tempo.Set(state.master.tempo);
    settings.masterLevel.Set(state.master.level);
    settings.songMode.Set(state.master.songMode);
    settings.synchroOn.Set(state.master.synchroOn);
    settings.loopOn.Set(state.master.loopOn);
    settings.loopStart.Set(state.master.loopStart);
    settings.loopEnd.Set(state.master.loopEnd);
    settings.crossfader.Set(state.master.crossfade);
    audio.presetSelection.channel.Set(state.master.presetMidi[0]);
    audio.presetSelection.baseNote.Set(state.master.presetMidi[1]);
    audio.presetSelection.mode.Set(state.master.presetMidi[2]);
    for (std::size_t index = 0; index < kInsertCount; ++index) {
        settings.masterInsertOn[index].Set(state.masterInserts[index].on);
        audio.masterInserts[index].Publish(state.masterInserts[index].slot, audio.graveyard);
    }
    for (std::size_t index = 0; index < kSendCount; ++index) {
        audio.sharedEffects[index].Publish(state.effects[index], audio.graveyard);
    }
    audio.masterLanes.Publish(std::make_shared<const CEventLanes>(state.masterLanes), audio.graveyard);
    audio.PublishInstruments(state.instruments);
}

int SongSteps(const ProjectState& state) {
    std::int64_t end = 0;
    bool repeats = false;
    for (const auto& instrument : state.instruments) {
        for (const PlaylistEntry& entry : *instrument->playlist.ForEdit()) {
            if (entry.pattern < 0 || entry.pattern >= kPatternCount || entry.start < 0) continue;
            const CPattern& pattern = *instrument->patterns[static_cast<std::size_t>(entry.pattern)].ForEdit();
            end = std::max(end, std::int64_t{entry.start} + pattern.LoopLength());
            repeats = repeats || entry.repeat != 0;
        }
    }
    if (repeats) end = std::max<std::int64_t>(end, state.master.playlistStepNumber);
    return static_cast<int>(std::min<std::int64_t>(end, kMaximumStepCount));
}

int LongestPatternSteps(const ProjectState& state) {
    int longest = 1;
    for (const auto& instrument : state.instruments) {
        const auto selected =
            static_cast<std::size_t>(std::clamp(instrument->patternSelected.Get(), 0, kPatternCount - 1));
        longest = std::max(longest, instrument->patterns[selected].ForEdit()->LoopLength());
    }
    return longest;
}

}  // namespace quib
