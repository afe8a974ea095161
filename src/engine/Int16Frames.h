// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Two planes of float samples to interleaved 16-bit frames, the same for output devices, the recorder and
// stems. Render thread. DriverSamples has the other sample types of drivers.

#include <cstdint>

namespace quib {

// Interleaves two planes: left then right, little-endian. A sample is clamped to [-1, 1] and becomes
// round(x * 32767.505859375 - 0.5), ties to even: 1 -> 32767, 0.5 -> 16383, 0 -> 0, -1 -> -32768.
// What is not a number becomes 0. Expects the processor's default rounding.
void ToInt16Frames(const float* left, const float* right, std::int16_t* interleaved, int frames) noexcept;

}  // namespace quib
