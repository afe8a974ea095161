// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Whether a signal has just been silent: gains may then be set at once, since nothing can click. Any thread.

#include <algorithm>
#include <cmath>

namespace quib {

// As many frames without sound let gains settle.
constexpr int kSettlingFrames = 4;

// Frames without sound at the end of a signal, counted up to kSettlingFrames; `before`: of what came before it.
inline int SilenceAfter(int before, const float* left, const float* right, int frames) noexcept {
    constexpr float kFloor = 1e-7F;  // -140 dBFS
    const int looked = std::min(frames, kSettlingFrames);
    for (int back = 1; back <= looked; ++back) {
        const int frame = frames - back;
        if (std::abs(left[frame]) > kFloor || std::abs(right[frame]) > kFloor) return back - 1;
    }
    return std::min(std::max(before, 0) + looked, kSettlingFrames);
}

}  // namespace quib
