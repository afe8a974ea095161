// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A sine of 1 kHz at -18 dBFS for checking levels, faded in and out. Render thread only.
//   y[n] = gain * sin(phase), phase advanced by 2 pi * 1000 / rate; costs nothing while it is off.

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quib {

class CTestTone {
public:
    static constexpr float kGain = 0.125F;

    void Add(bool on, double sampleRate, float* left, float* right, int frames) noexcept {
        const float target = on ? kGain : 0.0F;
        if (gain == 0.0F && target == 0.0F) return;
        constexpr double kHertz = 1000.0;
        constexpr double kFadeSeconds = 0.01;
        const double advance = 2.0 * std::numbers::pi * kHertz / sampleRate;
        const auto step = static_cast<float>(static_cast<double>(kGain) / (kFadeSeconds * sampleRate));
        for (int i = 0; i < frames; ++i) {
            gain = std::clamp(target, gain - step, gain + step);
            const float value = gain * static_cast<float>(std::sin(phase));
            left[i] += value;
            right[i] += value;
            phase = std::fmod(phase + advance, 2.0 * std::numbers::pi);
        }
    }

private:
    float gain = 0;
    double phase = 0;
};

}  // namespace quib
