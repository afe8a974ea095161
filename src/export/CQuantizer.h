// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Float samples to 16 bits with triangular dither: the sum of two even distributions of one step each, so
// that neither mean nor noise of the error depends on the sound. One thread.

#include <cstdint>

namespace quib {

class CQuantizer {
public:
    // round(x * 32767.505859375 - 0.5 + d), d within -1..1 of mean 0; clipped. What is no number becomes 0.
    void Dither(const float* left, const float* right, std::int16_t* interleaved, int frames) noexcept;

private:
    std::int16_t Convert(float sample) noexcept;
    // 0 to below 1.
    float Draw() noexcept;

    std::uint32_t state = 0x9E3779B9U;  // never 0
};

}  // namespace quib
