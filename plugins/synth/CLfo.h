// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Low-frequency oscillator of one voice, stepped once per control tick on the render thread. Jumps
// of its wave are rounded off over some 2 ms, so that they do not click.

#include "dsp/CRandom.h"
#include "dsp/FastMath.h"
#include "synth/SynthParameters.h"

namespace quibplug {

class CLfo {
public:
    void Start(std::uint32_t phase, std::uint32_t seed, int wave) noexcept {
        m_phase = phase;
        m_random.Seed(seed);
        m_held = m_random.NextSigned();
        m_value = WaveAt(wave);
    }

    // `turnsPerTick` below 0.5; `share` from OnePoleShare(0.002, tick rate).
    void Tick(int wave, float turnsPerTick, float share) noexcept {
        const std::uint32_t before = m_phase;
        m_phase += static_cast<std::uint32_t>(turnsPerTick * 4294967296.0f);
        if (m_phase < before) m_held = m_random.NextSigned();
        m_value += (WaveAt(wave) - m_value) * share;
    }

    float Value() const noexcept { return m_value; }  // -1..1

private:
    float WaveAt(int wave) const noexcept {
        const float turns = static_cast<float>(m_phase >> 8) * (1.0f / 16777216.0f);
        switch (wave) {
            case kLfoTriangle:
                return turns < 0.25f ? 4.0f * turns : (turns < 0.75f ? 2.0f - 4.0f * turns : 4.0f * turns - 4.0f);
            case kLfoSaw:
                return 1.0f - 2.0f * turns;
            case kLfoSquare:
                return turns < 0.5f ? 1.0f : -1.0f;
            case kLfoRandom:
                return m_held;
            default:
                return SineOfTurns(turns);
        }
    }

    std::uint32_t m_phase = 0;
    float m_held = 0.0f;
    float m_value = 0.0f;
    CRandom m_random;
};

}  // namespace quibplug
