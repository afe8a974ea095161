// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The memory of a group of strips in vectors, their channels side by side in the lanes (strip 0 left,
// strip 0 right, strip 1 left ..): taken from the strips' states before a block and put back after it.
// Local to the source file of one instruction set.

#include "engine/strip/MeterLanes.h"
#include "engine/strip/StripJob.h"

namespace quib {
namespace {

inline constexpr int kGroup = kLanes / 2;
inline constexpr int kTile = kMeterFrames;  // frames worked on at a time

inline constexpr float kGainRate = 0.005f;
inline constexpr float kSendRate = 0.001f;
inline constexpr float kAmountRate = 0.01f;
inline constexpr float kAmountGone = 0.0001f;
// Keeps the filters out of denormal numbers, and lies so far below what an effect hears that it still sleeps.
inline constexpr float kInsteadOfZero = 1e-15f;

// How a group is filtered. Fading: a strip of it has switched its equaliser off and may be done within the block.
enum class EFilters { kNone, kOn, kFading };

inline bool EqualizerRuns(const StripJob& job) noexcept {
    return job.targets.eqAmount != 0 || job.state->eqAmount > kAmountGone;
}

inline bool EqualizerFades(const StripJob& job) noexcept {
    return job.targets.eqAmount == 0 && job.state->eqAmount > kAmountGone;
}

struct BandLanes {
    Lanes a1 = {}, a2 = {}, b0 = {}, b1 = {}, b2 = {};
    Lanes x1 = {}, x2 = {}, y1 = {}, y2 = {};
};

// A lane without a filter has coefficients and amount 0 and nothing instead of zero: its signal passes
// bit for bit.
struct EqualizerLanes {
    BandLanes bands[kEqBandCount];
    Lanes amount = {}, amountTarget = {}, insteadOfZero = {};
};

struct GroupLanes {
    EqualizerLanes equalizer;
    Lanes gain = {}, gainTarget = {}, peak = {};
    Lanes send[2] = {}, sendTarget[2] = {}, sendFloor[2] = {};
};

inline void LoadMemory(BandLanes& lanes, const EqMemory& memory, int lane) noexcept {
    lanes.x1[lane] = memory.x1;
    lanes.x2[lane] = memory.x2;
    lanes.y1[lane] = memory.y1;
    lanes.y2[lane] = memory.y2;
}

inline void SaveMemory(const BandLanes& lanes, EqMemory& memory, int lane) noexcept {
    memory.x1 = lanes.x1[lane];
    memory.x2 = lanes.x2[lane];
    memory.y1 = lanes.y1[lane];
    memory.y2 = lanes.y2[lane];
}

inline void LoadEqualizer(EqualizerLanes& lanes, const StripJob& job, int strip) noexcept {
    for (int lane = 2 * strip; lane < 2 * strip + 2; ++lane) {
        lanes.amount[lane] = job.state->eqAmount;
        lanes.amountTarget[lane] = job.targets.eqAmount;
        lanes.insteadOfZero[lane] = kInsteadOfZero;
        for (int b = 0; b < kEqBandCount; ++b) {
            const EqBandState& band = job.state->eqBands[b];
            lanes.bands[b].a1[lane] = band.a1;
            lanes.bands[b].a2[lane] = band.a2;
            lanes.bands[b].b0[lane] = band.b0;
            lanes.bands[b].b1[lane] = band.b1;
            lanes.bands[b].b2[lane] = band.b2;
            LoadMemory(lanes.bands[b], lane % 2 == 0 ? band.left : band.right, lane);
        }
    }
}

inline void SaveEqualizer(EqualizerLanes& lanes, StripJob& job, int strip) noexcept {
    job.state->eqAmount = lanes.amount[2 * strip];
    const bool isOff = job.targets.eqAmount == 0 && job.state->eqAmount == 0;
    for (int b = 0; b < kEqBandCount; ++b) {
        if (isOff) job.state->eqBands[b].left = job.state->eqBands[b].right = {};
        if (isOff) continue;
        SaveMemory(lanes.bands[b], job.state->eqBands[b].left, 2 * strip);
        SaveMemory(lanes.bands[b], job.state->eqBands[b].right, 2 * strip + 1);
    }
}

inline void LoadGains(GroupLanes& lanes, const StripJob& job, int strip) noexcept {
    const int left = 2 * strip;
    lanes.gain[left] = job.state->gainLeft;
    lanes.gain[left + 1] = job.state->gainRight;
    lanes.gainTarget[left] = job.targets.gainLeft;
    lanes.gainTarget[left + 1] = job.targets.gainRight;
    lanes.peak[left] = lanes.peak[left + 1] = job.state->peak;
    for (int k = 0; k < kSendCount; ++k) {
        const int row = strip * kSendCount + k;
        lanes.send[row / kLanes][row % kLanes] = job.state->sendGain[k];
        lanes.sendTarget[row / kLanes][row % kLanes] = job.targets.send[k];
        lanes.sendFloor[row / kLanes][row % kLanes] = job.targets.holdSend[k] ? kHeldSendGain : 0;
    }
}

inline void SaveGains(const GroupLanes& lanes, StripJob& job, int strip, bool sends) noexcept {
    const int left = 2 * strip;
    job.state->gainLeft = lanes.gain[left];
    job.state->gainRight = lanes.gain[left + 1];
    const float peak = lanes.peak[left] > lanes.peak[left + 1] ? lanes.peak[left] : lanes.peak[left + 1];
    job.state->peak = PeakOrZero(peak);
    for (int k = 0; sends && k < kSendCount; ++k) {
        const int row = strip * kSendCount + k;
        job.state->sendGain[k] = lanes.send[row / kLanes][row % kLanes];
    }
}

// A plug-in that once returned a number beyond all bounds must not silence its strip for good.
inline void DropRunawayMemories(EqualizerLanes& lanes) noexcept {
    for (BandLanes& band : lanes.bands) {
        band.x1 = FiniteOrZero(band.x1);
        band.x2 = FiniteOrZero(band.x2);
        band.y1 = FiniteOrZero(band.y1);
        band.y2 = FiniteOrZero(band.y2);
    }
}

}  // namespace
}  // namespace quib
