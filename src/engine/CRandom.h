// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The random source of playback: a linear congruential generator (multiplier 214013, increment
// 2531011, 15 bits taken from the top half). The same seed gives the same music. One thread.

#include <cstdint>

namespace quib {

class CRandom {
public:
    static constexpr int kMaximum = 32767;
    static constexpr int kRange = kMaximum + 1;

    explicit CRandom(std::uint32_t seed = 1) noexcept : state(seed) {}
    void Seed(std::uint32_t seed) noexcept { state = seed; }

    // 0 .. kMaximum.
    int Draw() noexcept {
        state = state * 214013U + 2531011U;
        return static_cast<int>((state >> 16) & 0x7fffU);
    }

private:
    std::uint32_t state;
};

}  // namespace quib
