// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/BlockTime.h"

#include <algorithm>
#include <cmath>

namespace quib {

void FillBlockTime(BlockContext& block, const CTransport& transport, const EngineSettings& settings,
                   bool recording) noexcept {
    using namespace vst2;
    const int beatsPerBar = std::max(1, settings.beatsPerBar.Get());
    const int beatUnit = std::max(1, settings.beatUnit.Get());
    const double quartersPerBar = 4.0 * beatsPerBar / beatUnit;
    const int stepsPerBeat = std::max(1, settings.stepsPerBeat.Get());
    VstTimeInfo& time = block.time;
    time.samplePos = static_cast<double>(transport.sampleCounter);
    time.sampleRate = block.sampleRate;
    time.tempo = static_cast<double>(SafeTempo(settings));
    time.ppqPos = transport.QuarterNotes(stepsPerBeat);
    time.barStartPos = std::floor(time.ppqPos / quartersPerBar) * quartersPerBar;
    time.cycleStartPos = static_cast<double>(settings.loopStart.Get()) / stepsPerBeat;
    time.cycleEndPos = static_cast<double>(settings.loopEnd.Get()) / stepsPerBeat;
    time.timeSigNumerator = beatsPerBar;
    time.timeSigDenominator = beatUnit;
    time.flags = kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstCyclePosValid | kVstTimeSigValid;
    if (transport.playing) time.flags |= kVstTransportPlaying;
    if (transport.changed) time.flags |= kVstTransportChanged;
    if (settings.loopOn.IsOn() && settings.songMode.IsOn()) time.flags |= kVstTransportCycleActive;
    if (recording) time.flags |= kVstTransportRecording;
}

}  // namespace quib
