// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Peak meter along time. peak = max(peak, |x|) d for every sample is, over n samples,
// max(peak d^n, |x0| d^n, |x1| d^(n-1) .. |x(n-1)| d), and a maximum may be taken in any order: the
// result does not depend on how the samples are spread over lanes, only on the stretches from block start.

#include "engine/strip/Lanes.h"

namespace quib {
namespace {

inline constexpr float kPeakDecay = 0.9999f;
inline constexpr int kMeterFrames = 32;

// Powers d^32 .. d^1. The last n of them weigh a stretch of n samples.
struct MeterWeights {
    float power[kMeterFrames];

    constexpr MeterWeights() noexcept : power() {
        double value = 1;
        for (int i = kMeterFrames - 1; i >= 0; --i)
            power[i] = static_cast<float>(value *= static_cast<double>(kPeakDecay));
    }
};
inline constexpr MeterWeights kMeterWeights;

inline float PeakOrZero(float peak) noexcept { return peak <= __FLT_MAX__ ? peak : 0; }

}  // namespace
}  // namespace quib
