// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Render time as a share of the time that the block lasts, averaged over 20 blocks. Written by the
// render thread, read by any.

#include "model/CValue.h"

namespace quib {

class CCpuMeter {
public:
    // One block of `frames` at `sampleRate` hertz took `seconds`.
    void Add(double seconds, int frames, double sampleRate) noexcept {
        cpuSum += static_cast<float>(seconds / frames * sampleRate * 100.0);
        if (++cpuBlocks < kBlocks) return;
        cpuLoad.Set(cpuSum / kBlocks);
        cpuSum = 0;
        cpuBlocks = 0;
    }
    // Percent.
    float Load() const noexcept { return cpuLoad.Get(); }

private:
    static constexpr int kBlocks = 20;

    float cpuSum = 0;
    int cpuBlocks = 0;
    CValue cpuLoad;
};

}  // namespace quib
