// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The master's own sample loop. Local to the source file of one instruction set.

#include "engine/strip/MeterLanes.h"
#include "engine/strip/StripJob.h"

namespace quib {
namespace {

inline constexpr float kClip = 0.99f;

// The three smoothed values of the master, side by side in one vector.
struct MasterGains {
    Lanes value = {};
    Lanes target = {};

    MasterGains(const MasterState& state, const MasterTargets& targets) noexcept {
        value[0] = state.gain, target[0] = targets.gain;
        value[1] = state.crossfadeA, target[1] = targets.crossfadeA;
        value[2] = state.crossfadeB, target[2] = targets.crossfadeB;
    }

    void SaveTo(MasterState& state) const noexcept {
        state.gain = value[0];
        state.crossfadeA = value[1];
        state.crossfadeB = value[2];
    }

    // The master gain of the next frames.
    void Course(float* gain, int frames) noexcept {
        for (int i = 0; i < frames; ++i) {
            value += kMasterSmoothing * (target - value);
            gain[i] = value[0];
        }
    }
};

inline Lanes Clip(Lanes x) noexcept { return Smaller(Larger(NumberOrZero(x), Spread(-kClip)), Spread(kClip)); }

// Gain, clip and meter of one channel over at most kMeterFrames frames.
inline float ProcessMasterChannel(float* samples, const float* gain, int frames, float peak) noexcept {
    const float* weight = kMeterWeights.power + (kMeterFrames - frames);
    Lanes peaks = Spread(peak * weight[0]);
    int i = 0;
    for (; i + kLanes <= frames; i += kLanes) {
        const Lanes clipped = Clip(Load(samples + i) * Load(gain + i));
        Store(samples + i, clipped);
        peaks = Larger(Absolute(clipped) * Load(weight + i), peaks);
    }
    for (; i < frames; ++i) {
        const Lanes clipped = Clip(Spread(samples[i] * gain[i]));
        samples[i] = clipped[0];
        peaks = Larger(Absolute(clipped) * weight[i], peaks);
    }
    return LargestLane(peaks);
}

inline void ProcessMaster(MasterState& state, const MasterTargets& targets, float* left, float* right,
                          int frames) noexcept {
    MasterGains gains(state, targets);
    for (int first = 0; first < frames; first += kMeterFrames) {
        const int part = frames - first < kMeterFrames ? frames - first : kMeterFrames;
        float course[kMeterFrames];
        gains.Course(course, part);
        state.peakLeft = ProcessMasterChannel(left + first, course, part, state.peakLeft);
        state.peakRight = ProcessMasterChannel(right + first, course, part, state.peakRight);
    }
    gains.SaveTo(state);
}

}  // namespace
}  // namespace quib
