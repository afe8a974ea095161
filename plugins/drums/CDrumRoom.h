// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The room about the kit: early reflections and a short feedback network, fed with every drum at its place
// and free of bass, so that the low end stays in the middle. It sleeps while it is turned off or has died
// away. Belongs to one render thread; only Allocate() allocates.

#include "dsp/CCrossFade.h"
#include "dsp/CDiffuser.h"
#include "dsp/CEarlyReflections.h"
#include "dsp/CFeedbackNetwork.h"
#include "dsp/CQuietWatch.h"
#include "dsp/CStateVariableFilter.h"

namespace quibplug {

class CDrumRoom {
public:
    static constexpr float kSmallestMetres = 2.0f;
    static constexpr float kLargestMetres = 25.0f;

    void Allocate(float sampleRate) noexcept;
    void Clear() noexcept;
    bool Sounding() const noexcept { return m_awake; }
    // Whether it is to be fed: a level of zero costs nothing.
    bool On() const noexcept { return !m_level.Zero(); }

    // `level` is a gain, `metres` the length of the room, from which its decay follows.
    void Snap(float level, float metres) noexcept;
    void Tick(float level, float metres, int tickFrames) noexcept;
    // Adds the room to `left` and `right`; what the drums send into it is used up.
    void Render(float* fromLeft, float* fromRight, float* left, float* right, TickSpan span) noexcept;

private:
    NetworkSetting Setting() const noexcept;
    float LateGain() const noexcept;
    void FallAsleepWhenQuiet(int tickFrames) noexcept;

    float m_sampleRate = 44100.0f;
    float m_metres = 0.0f;
    float m_laidMetres = 0.0f;  // of m_coming
    Room m_room;                // the present one
    Room m_coming;              // the same, or where the cross-fade leads
    CCrossFade m_fade;
    FilterCoefficients m_lowCut{};
    CStateVariableFilter m_lowCuts[2];
    CDiffuser m_diffusers[2];
    CEarlyReflections m_early;
    CFeedbackNetwork m_network;
    Ramp m_level;
    CQuietWatch m_watch;
    bool m_awake = false;
};

}  // namespace quibplug
