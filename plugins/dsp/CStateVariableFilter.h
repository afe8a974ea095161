// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Two-pole state-variable filter without delay in its loop (topology-preserving transform with
// trapezoidal integrators: A. Simper, "Solving the continuous SVF equations using trapezoidal
// integration", 2013). Stable for any change of its coefficients. Used on render threads.

#include "dsp/FastMath.h"

namespace quibplug {

struct FilterCoefficients {
    float damping;  // 1 / Q
    float a1, a2, a3;

    // `tangent` is tan(pi * cutoff / rate), `damping` 1 / Q within -0.1..2. A negative one lets the filter
    // oscillate and grow: its user has to raise it with StateEnergy().
    static FilterCoefficients FromTangent(float tangent, float damping) noexcept {
        const float a1 = 1.0f / (1.0f + tangent * (tangent + damping));
        return {damping, a1, tangent * a1, tangent * tangent * a1};
    }
    static FilterCoefficients FromFrequency(float hertz, float damping, float sampleRate) noexcept {
        return FromTangent(Tangent(kPi * std::clamp(hertz / sampleRate, 0.0002f, 0.45f)), damping);
    }
};

struct FilterOutput {
    float lowPass;
    float bandPass;  // gain Q at its centre: times `damping` for a gain of 1
    float highPass;
};

class CStateVariableFilter {
public:
    void Reset() noexcept { m_first = m_second = 0.0f; }

    // Sum of the squares of the states. Without input and damping the trapezoidal rule keeps it from frame to
    // frame: 1 + tangent^2 times the squared amplitude of a sine at the cutoff.
    float StateEnergy() const noexcept { return m_first * m_first + m_second * m_second; }
    // The states of a sine at the cutoff, its low-pass output beginning at zero.
    void StartSine(float amplitude, float tangent) noexcept {
        m_first = amplitude;
        m_second = tangent * amplitude;
    }

    FilterOutput Process(float input, const FilterCoefficients& c) noexcept {
        const float difference = input - m_second;
        const float band = c.a1 * m_first + c.a2 * difference;
        const float low = m_second + c.a2 * m_first + c.a3 * difference;
        m_first = 2.0f * band - m_first;
        m_second = 2.0f * low - m_second;
        return {low, band, input - c.damping * band - low};
    }

private:
    float m_first = 0.0f;
    float m_second = 0.0f;
};

}  // namespace quibplug
