// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Strips to their planes. Where anything is filtered or still moves, the channels of a group of strips
// stand side by side in one vector and time runs frame by frame (StripLanes.h); where nothing does, a
// strip is a constant gain along time. Local to the source file of one instruction set.

#include "engine/strip/MeterLanes.h"
#include "engine/strip/StripLanes.h"

namespace quib {
namespace {

inline float Step(float value, float target, float rate) noexcept { return value + rate * (target - value); }

inline bool GainsMove(const StripJob& job) noexcept {
    const StripState& state = *job.state;
    const bool left = Step(state.gainLeft, job.targets.gainLeft, kGainRate) != state.gainLeft;
    const bool right = Step(state.gainRight, job.targets.gainRight, kGainRate) != state.gainRight;
    return left | right;
}

inline void FillLine(float* plane, float value) noexcept { Store(plane, Spread(value)); }

// Four switches at once: they are off for nearly every strip.
inline bool IsAnyOn(const bool (&switches)[kSendCount]) noexcept {
    unsigned all;
    static_assert(sizeof all == sizeof switches);
    __builtin_memcpy(&all, switches, sizeof all);
    return all != 0;
}

// Sends without an effect behind them go to their targets at once. True when there is no other.
inline bool SettleUnheardSends(StripJob& job) noexcept {
    bool all = true;
    for (int k = 0; k < kSendCount; ++k) {
        all &= job.sendUnheard[k];
        job.sendMask[k] = 0;
        if (!job.sendUnheard[k]) continue;
        const float floor = job.targets.holdSend[k] ? kHeldSendGain : 0;
        job.state->sendGain[k] = job.targets.send[k] > floor ? job.targets.send[k] : floor;
    }
    return all;
}

// Decides which sends of a strip still move, and leaves the settled ones for MixStrips.
inline bool PrepareSends(StripJob& job) noexcept {
    if (IsAnyOn(job.sendUnheard) && SettleUnheardSends(job)) return false;
    Quad gain, target, floor = {};
    __builtin_memcpy(&gain, job.state->sendGain, sizeof gain);
    __builtin_memcpy(&target, job.targets.send, sizeof target);
    for (int k = 0; IsAnyOn(job.targets.holdSend) && k < kSendCount; ++k)
        floor[k] = job.targets.holdSend[k] ? kHeldSendGain : 0;
    const Quad next = gain + kSendRate * (target - gain);
    const QuadBits moves = (next > floor ? next : floor) != gain;
    for (int k = 0; k < kSendCount; ++k) {
        FillLine(job.restingSend[k], gain[k]);
        job.sendCourse[k] = moves[k] ? job.planes.sendGain[k] : job.restingSend[k];
        job.sendMask[k] = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(moves[k]));
    }
    return (job.sendMask[0] | job.sendMask[1] | job.sendMask[2] | job.sendMask[3]) != 0;
}

// Extra pairs need the course of the strip's gains; few strips have any.
inline void PrepareExtra(StripJob& job, bool moves, int frames) noexcept {
    job.addsAnyExtra = false;
    if (!IsAnyOn(job.targets.holdSend)) return;
    for (int k = 0; k < kSendCount; ++k) {
        job.addsExtra[k] = job.targets.holdSend[k] && job.extraLeft[k] && job.extraRight[k];
        job.addsAnyExtra |= job.addsExtra[k];
    }
    if (!job.addsAnyExtra) return;
    float left = job.state->gainLeft;
    float right = job.state->gainRight;
    job.gainMask = moves ? ~std::size_t{0} : 0;
    FillLine(job.planes.gainLeft, left);
    FillLine(job.planes.gainRight, right);
    for (int i = 0; moves && i < frames; ++i) {
        job.planes.gainLeft[i] = left = Step(left, job.targets.gainLeft, kGainRate);
        job.planes.gainRight[i] = right = Step(right, job.targets.gainRight, kGainRate);
    }
}

// Constant gains over at most kMeterFrames frames; `peaks` takes part of the meter in each lane.
template <bool copies>
inline void ScaleStretch(const StripJob& job, int first, int frames, Lanes& peaks) noexcept {
    const float* inLeft = job.inLeft + first;
    const float* inRight = job.inRight + first;
    float* outLeft = job.planes.left + first;
    float* outRight = job.planes.right + first;
    const float gainLeft = job.state->gainLeft;
    const float gainRight = job.state->gainRight;
    const float* weight = kMeterWeights.power + (kMeterFrames - frames);
    Lanes largest = {};
    int i = 0;
    for (; i + kLanes <= frames; i += kLanes) {
        const Lanes left = Load(inLeft + i) * gainLeft;
        const Lanes right = Load(inRight + i) * gainRight;
        if (copies) Store(outLeft + i, left);
        if (copies) Store(outRight + i, right);
        largest = Larger(Larger(Absolute(left), Absolute(right)) * Load(weight + i), largest);
    }
    for (; i < frames; ++i) {
        const float left = inLeft[i] * gainLeft;
        const float right = inRight[i] * gainRight;
        if (copies) outLeft[i] = left;
        if (copies) outRight[i] = right;
        largest = Larger(Larger(Absolute(Spread(left)), Absolute(Spread(right))) * weight[i], largest);
    }
    peaks = Larger(largest, peaks * weight[0]);
}

template <bool copies>
inline void ScaleStrip(StripJob& job, int frames) noexcept {
    Lanes peaks = Spread(job.state->peak);
    int first = 0;
    for (; first + kMeterFrames <= frames; first += kMeterFrames) ScaleStretch<copies>(job, first, kMeterFrames, peaks);
    if (first < frames) ScaleStretch<copies>(job, first, frames - first, peaks);
    job.state->peak = PeakOrZero(LargestLane(peaks));
}

inline void MixFromPlanes(StripJob& job) noexcept {
    job.mixLeft = job.planes.left;
    job.mixRight = job.planes.right;
    job.mixGainLeft = job.mixGainRight = 1;
}

inline void RunSettledStrip(StripJob& job, int frames) noexcept {
    if (!job.inputsStay) return ScaleStrip<true>(job, frames);
    ScaleStrip<false>(job, frames);
    job.mixLeft = job.inLeft;
    job.mixRight = job.inRight;
    job.mixGainLeft = job.state->gainLeft;
    job.mixGainRight = job.state->gainRight;
}

template <EFilters filters>
void RunGroupWithSends(StripJob* jobs, int count, int frames, bool sendsMove) noexcept {
    sendsMove ? RunGroup<filters, true>(jobs, count, frames) : RunGroup<filters, false>(jobs, count, frames);
}

inline void ProcessGroup(StripJob* jobs, int count, int frames) noexcept {
    bool filters = false;
    bool fades = false;
    bool gainsMove = false;
    bool sendsMove = false;
    for (int i = 0; i < count; ++i) {
        const bool moves = GainsMove(jobs[i]);
        MixFromPlanes(jobs[i]);
        PrepareExtra(jobs[i], moves, frames);
        filters |= EqualizerRuns(jobs[i]);
        fades |= EqualizerFades(jobs[i]);
        gainsMove |= moves;
        sendsMove |= PrepareSends(jobs[i]);
    }
    if (fades)
        RunGroupWithSends<EFilters::kFading>(jobs, count, frames, sendsMove);
    else if (filters)
        RunGroupWithSends<EFilters::kOn>(jobs, count, frames, sendsMove);
    else if (gainsMove || sendsMove)
        RunGroupWithSends<EFilters::kNone>(jobs, count, frames, sendsMove);
    else
        for (int i = 0; i < count; ++i) RunSettledStrip(jobs[i], frames);
}

inline void ProcessStrips(StripJob* jobs, int count, int frames) noexcept {
    for (int first = 0; first < count; first += kGroup)
        ProcessGroup(jobs + first, count - first < kGroup ? count - first : kGroup, frames);
}

}  // namespace
}  // namespace quib
