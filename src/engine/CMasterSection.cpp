// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CMasterSection.h"

#include <algorithm>
#include <cmath>

#include "engine/PluginPieces.h"
#include "engine/Silence.h"

namespace quib {

MixBuses CMasterSection::Begin(const BlockContext& block) noexcept {
    std::fill_n(Left(), block.frames, 0.0F);
    std::fill_n(Right(), block.frames, 0.0F);
    MixBuses buses;
    buses.masterLeft = Left();
    buses.masterRight = Right();
    return buses;
}

void CMasterSection::Plan(const BlockContext& block, EngineSettings& settings) noexcept {
    plan.Play(block, settings);
    if (silence < 0 || (BeginsPlaying(block) && silence == kSettlingFrames)) {
        const MasterTargets targets = TargetsOf(plan.Pieces().front());
        state.gain = targets.gain;
        state.crossfadeA = targets.crossfadeA;
        state.crossfadeB = targets.crossfadeB;
        crossfade.assign(1, {0, state.crossfadeA, state.crossfadeB});
    }
    PlanCrossfade(block);
}

// The same steps as those that Finish will make. Strips follow at points of the grid: what one gave holds until
// the next, whatever block that is in.
void CMasterSection::PlanCrossfade(const BlockContext& block) noexcept {
    CrossfadeGains gains{0, state.crossfadeA, state.crossfadeB};
    const auto& points = block.grid.Points();
    const bool holds = block.grid.End() > 0 && (points.empty() || points.front().frame > 0);
    const CrossfadeGains last = holds ? crossfade.back() : gains;
    crossfade.assign(1, {0, last.a, last.b});
    const auto next = [](float value, float target) { return value + kMasterSmoothing * (target - value); };
    const auto& pieces = plan.Pieces();
    const bool rests = std::all_of(pieces.begin(), pieces.end(), [&](const MasterPiece& piece) {
        const MasterTargets targets = TargetsOf(piece);
        return next(gains.a, targets.crossfadeA) == gains.a && next(gains.b, targets.crossfadeB) == gains.b;
    });
    if (rests && last.a == gains.a && last.b == gains.b) return;
    for (const GridPoint& point : points) {
        plan.ForEach(gains.frame, point.frame, [&](const MasterPiece& piece, int begin, int end) {
            const MasterTargets targets = TargetsOf(piece);
            for (int frame = begin; frame < end; ++frame) {
                gains.a = next(gains.a, targets.crossfadeA);
                gains.b = next(gains.b, targets.crossfadeB);
            }
        });
        gains.frame = point.frame;
        if (point.frame > 0) crossfade.push_back(gains);
    }
}

void CMasterSection::RunInserts(const BlockContext& block) noexcept {
    for (std::size_t index = 0; index < kInsertCount; ++index) {
        CPlugin* const insert = block.masterInserts[index];
        if (insert == nullptr || !insert->CanReplace()) continue;
        RenderInPieces(*insert, block, [&](int begin, int end) { RunInsert(*insert, index, begin, end); });
    }
}

void CMasterSection::RunInsert(CPlugin& insert, std::size_t index, int begin, int end) noexcept {
    plan.ForEach(begin, end, [&](const MasterPiece& piece, int first, int next) {
        if (!piece.insertOn[index]) return;
        insert.Process(Left(), Right(), next - first, first);
        if (insert.OutputCount() == 0) return;
        std::copy_n(insert.Left() + first, next - first, Left() + first);
        std::copy_n(insert.Right() + first, next - first, Right() + first);
    });
}

// From the place of every step on, so that blocks make no difference.
void CMasterSection::PlayAudition(const BlockContext& block, const Audition& audition) noexcept {
    const auto& steps = block.grid.Steps();
    for (std::size_t index = 0; index < steps.size(); ++index) {
        const BlockStep& step = steps[index];
        const int begin = std::max(0, step.frame);
        const int end = index + 1 < steps.size() ? steps[index + 1].frame : block.grid.End();
        const double place = std::trunc(step.step * static_cast<double>(step.samplesPerStep)) + begin - step.frame;
        AddAudition(audition, place, Left() + begin, Right() + begin, end - begin);
    }
}

void CMasterSection::PlayTestTone(const BlockContext& block, bool on) noexcept {
    tone.Add(on, block.sampleRate, Left(), Right(), block.frames);
}

void CMasterSection::Finish(const BlockContext& block) noexcept {
    silence = SilenceAfter(silence, Left(), Right(), block.frames);
    plan.ForEach(0, block.frames, [&](const MasterPiece& piece, int begin, int end) {
        kernels.processMaster(state, TargetsOf(piece), Left() + begin, Right() + begin, end - begin);
    });
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
