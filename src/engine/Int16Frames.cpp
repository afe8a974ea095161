// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Int16Frames.h"

#include <bit>
#include <cstring>

static_assert(std::endian::native == std::endian::little);

namespace quib {

namespace {

constexpr int kLanes = 4;
using Lanes = float __attribute__((vector_size(16)));
using LaneBits = int __attribute__((vector_size(16)));

constexpr float kScale = 32767.505859375f;

// Adding 1.5 * 2^23 leaves a number's whole part, rounded to nearest even, in the low bits.
constexpr float kRounder = 12582912.0f;

LaneBits Round(Lanes x) noexcept {
    const Lanes notBelow = x < -1.0f ? Lanes{} - 1.0f : x;
    const Lanes notAbove = notBelow > 1.0f ? Lanes{} + 1.0f : notBelow;
    const Lanes clamped = notAbove <= 1.0f ? notAbove : Lanes{};
    return std::bit_cast<LaneBits>(clamped * kScale - 0.5f + kRounder);
}

// Right samples in the upper halves of the words, left samples in the lower.
void ConvertVector(const float* left, const float* right, std::int16_t* to) noexcept {
    Lanes pair[2];
    std::memcpy(&pair[0], left, sizeof pair[0]);
    std::memcpy(&pair[1], right, sizeof pair[1]);
    const LaneBits words = (Round(pair[0]) & 0xffff) | (Round(pair[1]) << 16);
    std::memcpy(to, &words, sizeof words);
}

}  // namespace

void ToInt16Frames(const float* left, const float* right, std::int16_t* interleaved, int frames) noexcept {
    const auto count = static_cast<std::size_t>(frames);
    std::size_t i = 0;
    for (; i + kLanes <= count; i += kLanes) ConvertVector(left + i, right + i, interleaved + 2 * i);
    const std::size_t rest = count - i;
    if (rest == 0) return;
    float ends[2][kLanes] = {};
    std::int16_t out[2 * kLanes];
    std::memcpy(ends[0], left + i, rest * sizeof(float));
    std::memcpy(ends[1], right + i, rest * sizeof(float));
    ConvertVector(ends[0], ends[1], out);
    std::memcpy(interleaved + 2 * i, out, 2 * rest * sizeof(std::int16_t));
}

}  // namespace quib
