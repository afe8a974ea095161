// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ProjectEngine.h"

#include <algorithm>

#include "model/PlaylistSpans.h"

namespace quib {

namespace {

void PublishSettings(const MasterSettings& master, CAudio& audio) {
    EngineSettings& settings = audio.settings;
    settings.tempo.Set(master.tempo);
    settings.masterLevel.Set(master.level);
    settings.songMode.Set(master.songMode);
    settings.synchroOn.Set(master.synchroOn);
    settings.loopOn.Set(master.loopOn);
    settings.loopStart.Set(master.loopStart);
    settings.loopEnd.Set(master.loopEnd);
    settings.crossfader.Set(master.crossfade);
    if (master.timeSignature[0] > 0) {
        settings.beatsPerBar.Set(master.timeSignature[0]);
        settings.beatUnit.Set(master.timeSignature[1]);
    }
    audio.presetSelection.channel.Set(master.presetMidi[0]);
    audio.presetSelection.baseNote.Set(master.presetMidi[1]);
    audio.presetSelection.mode.Set(master.presetMidi[2]);
}

void GatherSettings(const CAudio& audio, MasterSettings& master) {
    const EngineSettings& settings = audio.settings;
    master.tempo = settings.tempo.Get();
    master.level = settings.masterLevel.Get();
    master.songMode = settings.songMode.Get();
    master.synchroOn = settings.synchroOn.Get();
    master.loopOn = settings.loopOn.Get();
    master.loopStart = settings.loopStart.Get();
    master.loopEnd = settings.loopEnd.Get();
    master.crossfade = settings.crossfader.Get();
    master.timeSignature = {settings.beatsPerBar.Get(), settings.beatUnit.Get()};
    master.presetMidi = {audio.presetSelection.channel.Get(), audio.presetSelection.baseNote.Get(),
                         audio.presetSelection.mode.Get()};
}

}  // namespace

void PublishProject(const ProjectState& state, CAudio& audio) {
    for (const auto& instrument : state.instruments) audio.PrepareInstrument(*instrument);
    PublishSettings(state.master, audio);
    for (std::size_t index = 0; index < kInsertCount; ++index) {
        audio.settings.masterInsertOn[index].Set(state.masterInserts[index].on);
        audio.masterInserts[index].Publish(state.masterInserts[index].slot, audio.graveyard);
    }
    for (std::size_t index = 0; index < kSendCount; ++index) {
        audio.sharedEffects[index].Publish(state.effects[index], audio.graveyard);
    }
    audio.masterLanes.Publish(std::make_shared<const CEventLanes>(state.masterLanes), audio.graveyard);
    audio.PublishInstruments(state.instruments);
}

void GatherProject(const CAudio& audio, ProjectState& state) {
    GatherSettings(audio, state.master);
    for (std::size_t index = 0; index < kInsertCount; ++index) {
        state.masterInserts[index].on = audio.settings.masterInsertOn[index].Get();
        state.masterInserts[index].slot = audio.masterInserts[index].ForEdit();
    }
    for (std::size_t index = 0; index < kSendCount; ++index) {
        state.effects[index] = audio.sharedEffects[index].ForEdit();
    }
    state.masterLanes = *audio.masterLanes.ForEdit();
    state.instruments = *audio.instruments.ForEdit();
}

int SongSteps(const ProjectState& state) {
    std::int32_t end = 0;
    bool endless = false;
    for (const auto& instrument : state.instruments) {
        const PlaylistLength length =
            LengthOf(PlaylistSpans(*instrument->playlist.ForEdit(), PatternLengthsForEdit(*instrument)));
        end = std::max(end, length.steps);
        endless = endless || length.endless;
    }
    if (endless) end = std::max(end, state.master.playlistStepNumber);
    return std::min(end, kMaximumStepCount);
}

namespace {

// Of two passes through what the instrument plays from its selected pattern on.
int TwoPasses(const CInstrument& instrument) {
    const auto pattern = [&](int index) { return instrument.patterns[static_cast<std::size_t>(index)].ForEdit(); };
    const int selected = std::clamp(instrument.patternSelected.Get(), 0, kPatternCount - 1);
    const auto isUsed = [&](int index) { return instrument.patternUsed[static_cast<std::size_t>(index)].Get() != 0; };
    const auto next = [&](int index) {
        int distance = 1;
        while (distance < kPatternCount && !isUsed((index + distance) % kPatternCount)) ++distance;
        return (index + distance) % kPatternCount;
    };
    // One that is not marked plays once, ahead of the chain.
    const bool isMarked = isUsed(selected);
    const bool isChain = SelectedStepNumberMode(instrument) == EStepNumberMode::kChain;
    if (!isChain || (!isMarked && next(selected) == selected)) return 2 * pattern(selected)->LoopLength();
    const int first = isMarked ? selected : next(selected);
    int steps = pattern(selected)->LoopLength();
    int passes = isMarked ? 1 : 0;
    for (int index = next(selected); index != first || ++passes <= 2; index = next(index)) {
        steps += pattern(index)->LoopLength() - pattern(index)->LoopStart();
    }
    return steps;
}

}  // namespace

int PatternModeSteps(const ProjectState& state) {
    std::int64_t longest = 1;
    for (const auto& instrument : state.instruments) longest = std::max<std::int64_t>(longest, TwoPasses(*instrument));
    return static_cast<int>(std::min<std::int64_t>(longest, kMaximumStepCount));
}

}  // namespace quib
