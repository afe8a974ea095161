// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The course of a cross-fade from one delay to another, counted in samples. Belongs to one render
// thread. Sine-squared, so that neither value nor slope jumps.

#include "dsp/FastMath.h"

namespace quibplug {

class CCrossFade {
public:
    // Rounded up to whole ticks: started at a tick, it also ends with one.
    void Start(float seconds, float sampleRate) noexcept {
        constexpr int kLongestTick = 64;
        m_length = (static_cast<int>(seconds * sampleRate) / kLongestTick + 1) * kLongestTick;
        m_elapsed = 0;
    }
    void Stop() noexcept { m_elapsed = m_length; }
    bool Running() const noexcept { return m_elapsed < m_length; }

    // Share of the new delay in each of the coming frames, without moving on.
    void Fill(float* shares, int frames) const noexcept {
        for (int i = 0; i < frames; ++i) shares[i] = ShareAfter(i + 1);
    }
    // The share of the last of the coming `frames`.
    float ShareAfter(int frames) const noexcept {
        const int place = m_elapsed + frames;
        if (place >= m_length) return 1.0f;
        const float sine = SineOfQuarter(0.5f * kPi * static_cast<float>(place) / static_cast<float>(m_length));
        return sine * sine;
    }
    void Advance(int frames) noexcept { m_elapsed = m_elapsed + frames < m_length ? m_elapsed + frames : m_length; }

private:
    int m_length = 0;
    int m_elapsed = 0;
};

}  // namespace quibplug
