// SPDX-License-Identifier: GPL-3.0-or-later
#include "loops/Sinc.h"

#include <cmath>
#include <numbers>

namespace quibplug {

const SincTable& SincTable::Shared() {
    static const SincTable table;
    return table;
}

// Weights within a Blackman window; each row adds up to 1.
SincTable::SincTable() {
    constexpr double kHalf = 0.5 * static_cast<double>(kSincTaps);
    for (std::size_t phase = 0; phase < m_rows.size(); ++phase) {
        double sum = 0.0;
        std::array<double, kSincTaps> row{};
        for (std::size_t i = 0; i < kSincTaps; ++i) {
            const double x = static_cast<double>(i) - (kHalf - 1.0) - static_cast<double>(phase) / kPhases;
            const double angle = std::numbers::pi * x;
            const double sinc = std::fabs(x) < 1e-9 ? 1.0 : std::sin(angle) / angle;
            const double window = 0.42 + 0.5 * std::cos(angle / kHalf) + 0.08 * std::cos(2.0 * angle / kHalf);
            row[i] = std::fabs(x) < kHalf ? sinc * window : 0.0;
            sum += row[i];
        }
        for (std::size_t i = 0; i < kSincTaps; ++i) m_rows[phase][i] = static_cast<float>(row[i] / sum);
    }
}

}  // namespace quibplug
