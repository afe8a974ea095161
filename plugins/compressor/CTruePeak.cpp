// SPDX-License-Identifier: GPL-3.0-or-later
#include "compressor/CTruePeak.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quibplug {

CTruePeak::CTruePeak() noexcept {
    for (std::size_t place = 0; place < kBetween; ++place) {
        double sum = 0.0;
        std::array<double, kTaps> row{};
        for (std::size_t i = 0; i < kTaps; ++i) {
            const double x = static_cast<double>(i) - (kDelay - 1) - 0.25 * static_cast<double>(place + 1);
            const double angle = std::numbers::pi * x;
            row[i] = std::sin(angle) / angle * (0.5 + 0.5 * std::cos(angle / (kDelay + 0.5)));
            sum += row[i];
        }
        for (std::size_t i = 0; i < kTaps; ++i) m_taps[place][i] = static_cast<float>(row[i] / sum);
    }
}

void CTruePeak::Raise(const float* samples, float* peaks, int frames) noexcept {
    std::array<float, kTaps - 1 + kMostFrames> line;
    std::copy(m_past.begin(), m_past.end(), line.begin());
    std::copy_n(samples, frames, line.begin() + m_past.size());
    for (int i = 0; i < frames; ++i) {
        const float* window = line.data() + i;
        float peak = std::max(peaks[i], std::fabs(window[kDelay - 1]));
        for (const auto& taps : m_taps) {
            float value = 0.0f;
            for (std::size_t k = 0; k < kTaps; ++k) value += taps[k] * window[k];
            peak = std::max(peak, std::fabs(value));
        }
        peaks[i] = peak;
    }
    std::copy_n(line.begin() + frames, m_past.size(), m_past.begin());
}

}  // namespace quibplug
