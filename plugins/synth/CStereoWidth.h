// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Makes a sound wide without a loss in mono: what both sides have in common is smeared by all-passes, freed of
// bass, and added to the left and taken from the right. The sum of both sides stays, sample for sample, what it
// was. Belongs to one render thread; only Allocate() allocates.

#include "dsp/CDiffuser.h"
#include "dsp/CQuietWatch.h"
#include "dsp/CStateVariableFilter.h"

namespace quibplug {

class CStereoWidth {
public:
    void Allocate(float sampleRate) noexcept;
    void Clear() noexcept;
    // Whether something of it is still to be heard after the sound has ended.
    bool Sounding() const noexcept { return m_awake; }

    // `width` 0..1: the difference of the sides beside their sum. 0 costs nothing.
    void Snap(float width) noexcept { m_width.Set(width); }
    void Tick(float width, int tickFrames) noexcept;
    void Render(float* left, float* right, TickSpan span) noexcept;

private:
    CDiffuser m_diffuser;
    FilterCoefficients m_lowCut{};
    CStateVariableFilter m_filter;
    Ramp m_width;
    CQuietWatch m_watch;
    bool m_awake = false;
};

}  // namespace quibplug
