// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/BlockTime.h"

#include <algorithm>
#include <cmath>

namespace quib {

void FillBlockTime(BlockContext& block, const CTransport& transport, const EngineSettings& settings,
                   bool recording) noexcept {
    const int beatsPerBar = std::max(1, settings.beatsPerBar.Get());
    const int beatUnit = std::max(1, settings.beatUnit.Get());
    const double quartersPerBar = 4.0 * beatsPerBar / beatUnit;
    const int stepsPerBeat = std::max(1, settings.stepsPerBeat.Get());
    PlayTime& time = block.time;
    time.known = true;
    time.samplePosition = static_cast<double>(transport.sampleCounter);
    time.sampleRate = block.sampleRate;
    time.tempo = static_cast<double>(SafeTempo(settings));
    time.quarterNotes = transport.QuarterNotes(stepsPerBeat);
    time.barStart = std::floor(time.quarterNotes / quartersPerBar) * quartersPerBar;
    time.loopStart = static_cast<double>(settings.loopStart.Get()) / stepsPerBeat;
    time.loopEnd = static_cast<double>(settings.loopEnd.Get()) / stepsPerBeat;
    time.beatsPerBar = beatsPerBar;
    time.beatUnit = beatUnit;
    time.playing = transport.playing;
    time.transportChanged = transport.changed;
    time.looping = settings.loopOn.IsOn() && settings.songMode.IsOn();
    time.recording = recording;
}

}  // namespace quib
