// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Peak, level and soundness of a signal, block by block.

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace quib {

class CSignalStatistics {
public:
    void Add(const float* samples, int frames) {
        for (int i = 0; i < frames; ++i) {
            if (!std::isfinite(samples[i])) finite = false;
            peak = std::max(peak, std::abs(samples[i]));
            squares += static_cast<double>(samples[i]) * static_cast<double>(samples[i]);
        }
        count += frames;
    }
    float Peak() const { return peak; }
    double Rms() const { return count > 0 ? std::sqrt(squares / static_cast<double>(count)) : 0.0; }
    bool Finite() const { return finite; }

private:
    float peak = 0;
    double squares = 0;
    std::int64_t count = 0;
    bool finite = true;
};

}  // namespace quib
