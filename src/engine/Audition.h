// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A mono sample that is played into the master bus, locked to the transport. Published whole.

#include <vector>

namespace quib {

struct Audition {
    std::vector<float> samples;  // empty: none
    float gain = 1.0F;
    int offset = 0;  // samples added to the read position
    bool suspended = false;
};

// Adds the sample to both channels; `position` is the first frame's place in samples.
inline void AddAudition(const Audition& audition, double position, float* left, float* right, int frames) noexcept {
    if (audition.samples.empty() || audition.suspended) return;
    const auto length = static_cast<double>(audition.samples.size());
    for (int i = 0; i < frames; ++i) {
        const double place = position + audition.offset + i;
        if (place < 0.0 || place >= length) continue;
        const float value = audition.samples[static_cast<std::size_t>(place)] * audition.gain;
        left[i] += value;
        right[i] += value;
    }
}

}  // namespace quib
