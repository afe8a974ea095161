// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CMasterSection.h"

#include <algorithm>

namespace quib {

MixBuses CMasterSection::Begin(const BlockContext& block) noexcept {
    std::fill_n(Left(), block.frames, 0.0F);
    std::fill_n(Right(), block.frames, 0.0F);
    MixBuses buses;
    buses.masterLeft = Left();
    buses.masterRight = Right();
    return buses;
}

void CMasterSection::RunInserts(const BlockContext& block, const EngineSettings& settings) noexcept {
    for (std::size_t index = 0; index < kInsertCount; ++index) {
        CPlugin* const insert = block.masterInserts[index];
        if (insert == nullptr || !insert->CanReplace() || !settings.masterInsertOn[index].IsOn()) continue;
        insert->SetBlockTime(block.time);
        insert->Process(Left(), Right(), block.frames);
        if (insert->OutputCount() == 0) continue;
        std::copy_n(insert->Left(), block.frames, Left());
        std::copy_n(insert->Right(), block.frames, Right());
    }
}

void CMasterSection::PlayAudition(const BlockContext& block, const Audition& audition,
                                  const CTransport& transport) noexcept {
    if (block.playing) AddAudition(audition, transport.SamplePlace(), Left(), Right(), block.frames);
}

void CMasterSection::PlayTestTone(const BlockContext& block, bool on) noexcept {
    tone.Add(on, block.sampleRate, Left(), Right(), block.frames);
}

void CMasterSection::Finish(const BlockContext& block, const EngineSettings& settings) noexcept {
    const MasterTargets targets = MakeMasterTargets(settings.masterLevel.Get(), settings.crossfader.Get(), tables);
    kernels.processMaster(state, targets, Left(), Right(), block.frames);
    peaks[0].Set(state.peakLeft);
    peaks[1].Set(state.peakRight);
}

// A line from the last gain to the wanted one over the block; at full level the samples stay as they are.
void CMasterSection::ApplyHeadphonesLevel(const BlockContext& block, const EngineSettings& settings) noexcept {
    const float target = tables.MasterGain(settings.headphonesLevel.Get());
    if (target == 1.0F && headphonesGain == 1.0F) return;
    const float step = (target - headphonesGain) / static_cast<float>(block.frames);
    for (float* const samples : {Left(), Right()}) {
        for (int frame = 0; frame < block.frames; ++frame) {
            samples[frame] *= headphonesGain + step * static_cast<float>(frame + 1);
        }
    }
    headphonesGain = target;
}

}  // namespace quib
