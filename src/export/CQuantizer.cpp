// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/CQuantizer.h"

#include <algorithm>
#include <cmath>

namespace quib {

namespace {
constexpr float kScale = 32767.505859375F;
constexpr float kLowest = -32768.0F;
constexpr float kHighest = 32767.0F;
}  // namespace

float CQuantizer::Draw() noexcept {
    state ^= state << 13U;
    state ^= state >> 17U;
    state ^= state << 5U;
    return static_cast<float>(state >> 8U) * 0x1p-24F;
}

std::int16_t CQuantizer::Convert(float sample) noexcept {
    const float known = std::isnan(sample) ? 0.0F : std::clamp(sample, -1.0F, 1.0F);
    const float noise = Draw() - Draw();
    return static_cast<std::int16_t>(std::lrint(std::clamp(known * kScale - 0.5F + noise, kLowest, kHighest)));
}

void CQuantizer::Dither(const float* left, const float* right, std::int16_t* interleaved, int frames) noexcept {
    for (int frame = 0; frame < frames; ++frame) {
        *interleaved++ = Convert(left[frame]);
        *interleaved++ = Convert(right[frame]);
    }
}

}  // namespace quib
