// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Elementary functions for render threads, made of plain arithmetic only: the same bits on every
// machine, where the C library may choose its code by processor. Never allocates, never branches on
// anything but its argument.

#include <algorithm>
#include <bit>
#include <cstdint>

namespace quibplug {

constexpr float kPi = 3.14159265358979f;
constexpr float kOctavesPerNeper = 1.44269504f;

// Two to the power of `exponent`, clamped to +-126. Taylor series of 2^f about the nearest whole
// number; relative error below 2e-7 (0.0003 cents).
inline float Exp2(float exponent) noexcept {
    const float clamped = std::clamp(exponent, -126.0f, 126.0f);
    const auto whole = static_cast<std::int32_t>(clamped + (clamped < 0.0f ? -0.5f : 0.5f));
    const float f = clamped - static_cast<float>(whole);
    const float series =
        1.0f +
        f * (0.69314718f +
             f * (0.24022651f +
                  f * (0.05550411f + f * (0.00961813f + f * (0.00133336f + f * (0.00015404f + f * 0.00001525f))))));
    return series * std::bit_cast<float>((whole + 127) << 23);
}

// Logarithm to base two of `value` > 0: 2 artanh((m - 1) / (m + 1)) of the mantissa. Error below 1e-6.
inline float Log2(float value) noexcept {
    auto bits = std::bit_cast<std::int32_t>(value);
    const std::int32_t whole = (bits - 0x3f3504f3) >> 23;  // mantissa within sqrt(1/2)..sqrt(2)
    const float mantissa = std::bit_cast<float>(bits - (whole << 23));
    const float s = (mantissa - 1.0f) / (mantissa + 1.0f);
    const float square = s * s;
    const float series =
        1.0f + square * (0.33333333f + square * (0.2f + square * (0.14285714f + square * 0.11111111f)));
    return static_cast<float>(whole) + 2.0f * kOctavesPerNeper * s * series;
}

// e to the power of `exponent`.
inline float Exp(float exponent) noexcept { return Exp2(exponent * kOctavesPerNeper); }

// Sine of `radians`, within -pi/2..pi/2. Error below 4e-6.
inline float SineOfQuarter(float radians) noexcept {
    const float square = radians * radians;
    return radians *
           (1.0f + square * (-0.16666667f + square * (0.00833333f + square * (-0.00019841f + square * 0.0000027557f))));
}

// Sine of `turns` of the circle, within -1..1.
inline float SineOfTurns(float turns) noexcept {
    const float folded = turns - static_cast<float>(static_cast<std::int32_t>(turns + (turns < 0.0f ? -0.5f : 0.5f)));
    const float quarter = folded > 0.25f ? 0.5f - folded : (folded < -0.25f ? -0.5f - folded : folded);
    return SineOfQuarter(quarter * 2.0f * kPi);
}

// Tangent of `radians`, within 0..1.5.
inline float Tangent(float radians) noexcept { return SineOfQuarter(radians) / SineOfQuarter(0.5f * kPi - radians); }

// Soft saturation: the (3, 2) Pade approximant of tanh, exactly +-1 from +-3 on.
inline float Saturate(float value) noexcept {
    const float x = std::clamp(value, -3.0f, 3.0f);
    const float square = x * x;
    return x * (27.0f + square) / (27.0f + 9.0f * square);
}

// The share of the way that a one-pole low-pass of time constant `seconds` goes in one step.
inline float OnePoleShare(float seconds, float stepsPerSecond) noexcept {
    const float x = 1.0f / std::max(seconds * stepsPerSecond, 1e-3f);
    return x < 0.02f ? x * (1.0f - x * (0.5f - x * 0.16666667f)) : 1.0f - Exp(-x);
}

}  // namespace quibplug
