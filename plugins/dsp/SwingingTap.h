// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What chorus and flanger share: a low-frequency oscillator counted in whole phases, and a reading
// point of a delay line that follows it. Both move once per control tick and in straight lines
// between, so that no sound depends on block sizes. For render threads.

#include <algorithm>
#include <cstdint>

#include "dsp/CDelayLine.h"
#include "dsp/FastMath.h"
#include "dsp/Ramp.h"

namespace quibplug {

enum class SwingShape { kSine, kTriangle };

class CSwing {
public:
    void Reset() noexcept { m_phase = 0; }
    void Advance(float hertz, float ticksPerSecond) noexcept {
        m_phase +=
            static_cast<std::uint32_t>(static_cast<double>(hertz) / static_cast<double>(ticksPerSecond) * 4294967296.0);
    }
    // 0..1, `turns` of the circle ahead. The triangle's corners are rounded, or they would be heard as
    // ticks of the pitch.
    float At(float turns, SwingShape shape) const noexcept {
        const float place = static_cast<float>(m_phase >> 8) * (1.0f / 16777216.0f) + turns;
        const float sine = SineOfTurns(place - static_cast<float>(static_cast<int>(place)));
        if (shape == SwingShape::kSine) return 0.5f + 0.5f * sine;
        const float square = sine * sine;
        return 0.5f + 0.4f * sine * (1.0f + 0.25f * square * square);
    }

private:
    std::uint32_t m_phase = 0;
};

// Delays in frames. Its speed stays within half a frame per frame, so that a moved knob bends the
// pitch by no more than half.
class CSwingingTap {
public:
    void Snap(float delay) noexcept { m_delay.Set(delay); }
    void Aim(float delay, int tickFrames) noexcept {
        const float reach = 0.5f * static_cast<float>(tickFrames);
        m_delay.Aim(m_delay.end + std::clamp(delay - m_delay.end, -reach, reach));
    }
    void Fill(float* delays, int offset, int frames, int tickFrames) const noexcept {
        m_delay.Fill(delays, offset, frames, tickFrames);
    }

private:
    Ramp m_delay;
};

}  // namespace quibplug
