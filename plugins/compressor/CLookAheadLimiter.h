// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A stereo limiter that sees peaks coming: the sound is delayed, the smallest gain that any sample of
// the delay needs is averaged over that same time, so the gain has come down, without a corner, when
// the peak arrives. No sample leaves it above the ceiling, and of the wave between the samples next to
// nothing. Belongs to one render thread; only Allocate() allocates.
//
// The average runs over sums of whole numbers: it neither drifts nor depends on block sizes.

#include <cstdint>
#include <vector>

#include "compressor/CTruePeak.h"
#include "dsp/CDelayLine.h"

namespace quibplug {

class CLookAheadLimiter {
public:
    // Answers false, and changes nothing, without memory for it.
    bool Allocate(float sampleRate) noexcept;
    void Reset() noexcept;

    int LatencyFrames() const noexcept { return static_cast<int>(m_released.size()) - 1 + CTruePeak::kDelay; }

    // In place. `ceilings` are linear gains above 0, `release` the share of OnePoleShare() per frame.
    // Answers the largest magnitude that came in.
    float Process(float* left, float* right, const float* ceilings, float release, int frames) noexcept;

private:
    struct Need {
        std::int64_t gain;  // of 2^30
        std::int64_t frame;
    };
    std::int64_t SmallestNeed(std::int64_t gain) noexcept;

    CDelayLine m_left;
    CDelayLine m_right;
    CTruePeak m_leftPeaks;
    CTruePeak m_rightPeaks;
    std::vector<Need> m_needs;  // ring; gains rise from the oldest to the newest
    std::size_t m_firstNeed = 0;
    std::size_t m_needCount = 0;
    std::vector<std::int64_t> m_released;  // ring of what is averaged
    std::size_t m_place = 0;
    std::int64_t m_sum = 0;
    std::int64_t m_frame = 0;
    float m_level = 1.0f;  // with the release applied
};

}  // namespace quibplug
