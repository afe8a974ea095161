// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Render time as a share of the time that the block lasts, averaged over 20 blocks. Written by the
// render thread, read by any.

#include <cstdint>

#include "model/CValue.h"

namespace quib {

class CCpuMeter {
public:
    // One block of `frames` at `sampleRate` hertz took that many nanoseconds.
    void Add(std::uint64_t nanoseconds, int frames, double sampleRate) noexcept {
        const double seconds = static_cast<double>(nanoseconds) * 1e-9;
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
