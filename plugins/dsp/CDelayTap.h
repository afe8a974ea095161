// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Reads a delay line at a delay that may change while it sounds: by a cross-fade between the two
// delays, or by gliding there as a tape machine does, which bends the pitch on the way. Settled, it
// is exact to the sample. Belongs to one render thread, never allocates.

#include "dsp/CCrossFade.h"
#include "dsp/CDelayLine.h"

namespace quibplug {

enum class TimeChange { kFade, kGlide };

class CDelayTap {
public:
    // At `delay` frames at once.
    void Snap(int delay) noexcept;
    // At a control tick: `delay` is where to go from now on. A cross-fade under way is finished first.
    void Aim(int delay, TimeChange change, float sampleRate) noexcept;
    void Read(const CDelayLine& line, float* to, int frames) noexcept;

    // The longest delay that is being read.
    int Longest() const noexcept;

private:
    void ReadStill(const CDelayLine& line, float* to, int frames) const noexcept;
    void ReadGliding(const CDelayLine& line, float* to, int frames) noexcept;

    double m_present = 32.0;  // frames
    int m_target = 32;        // frames
    bool m_gliding = false;
    float m_glideShare = 0.0f;
    CCrossFade m_fade;
};

}  // namespace quibplug
