// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/BlockTime.h"

#include <algorithm>
#include <cmath>

namespace quib {

namespace {

void PlaceTime(PlayTime& time, const BlockContext& block, int frame) noexcept {
    if (const BlockStep* const step = block.grid.StepAt(frame)) {
        time.tempo = static_cast<double>(step->tempo);
        time.quarterNotes = (step->step + ShareOf(*step, frame)) * block.quartersPerStep;
        const bool jumpsHere = step->frame == frame && step->jumps;
        time.transportChanged = time.transportChanged || jumpsHere;
    }
    time.barStart = std::floor(time.quarterNotes / block.quartersPerBar) * block.quartersPerBar;
}

}  // namespace

void FillBlockTime(BlockContext& block, const CTransport& transport, const EngineSettings& settings) noexcept {
    const int beatsPerBar = std::max(1, settings.beatsPerBar.Get());
    const int beatUnit = std::max(1, settings.beatUnit.Get());
    const int stepsPerBeat = std::max(1, settings.stepsPerBeat.Get());
    PlayTime& time = block.time;
    time.known = true;
    time.sampleRate = block.sampleRate;
    time.tempo = static_cast<double>(SafeTempo(settings));
    time.quarterNotes = transport.QuarterNotes(stepsPerBeat);
    block.quartersPerBar = 4.0 * beatsPerBar / beatUnit;
    block.quartersPerStep = 1.0 / stepsPerBeat;
    time.loopStart = static_cast<double>(settings.loopStart.Get()) / stepsPerBeat;
    time.loopEnd = static_cast<double>(settings.loopEnd.Get()) / stepsPerBeat;
    time.beatsPerBar = beatsPerBar;
    time.beatUnit = beatUnit;
    time.looping = block.songMode && HasLoop(settings);
    PlaceTime(time, block, 0);
}

PlayTime TimeAt(const BlockContext& block, int frame) noexcept {
    PlayTime time = block.time;
    if (frame <= 0) return time;
    time.samplePosition += frame;
    time.transportChanged = false;
    PlaceTime(time, block, frame);
    return time;
}

}  // namespace quib
