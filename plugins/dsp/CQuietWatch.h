// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// For how long nothing above -120 dBFS has passed, counted in control ticks, so that what depends on it does
// not depend on block sizes. Belongs to one render thread.

#include <algorithm>
#include <cmath>

namespace quibplug {

class CQuietWatch {
public:
    void Reset() noexcept { *this = CQuietWatch(); }
    void Note(const float* samples, int frames) noexcept {
        for (int i = 0; i < frames; ++i) m_peak = std::max(m_peak, std::fabs(samples[i]));
    }
    // The highest magnitude of the present tick.
    float Peak() const noexcept { return m_peak; }

    // Ends a tick.
    void Tick(int tickFrames) noexcept {
        constexpr float kFloor = 1e-6f;
        m_quietFrames = m_peak <= kFloor ? m_quietFrames + tickFrames : 0;
        m_peak = 0.0f;
    }
    int QuietFrames() const noexcept { return m_quietFrames; }

private:
    float m_peak = 0.0f;
    int m_quietFrames = 0;
};

}  // namespace quibplug
