// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// "QUIB reverb": cuts and pre-delay, a chain of all-passes, early reflections, and a feedback delay
// network for the late sound. A change of size cross-fades from room to room. See CPluginBase for
// its threads.

#include "dsp/CDelayTap.h"
#include "dsp/CDiffuser.h"
#include "dsp/CEarlyReflections.h"
#include "dsp/CEffectBase.h"
#include "dsp/CFeedbackNetwork.h"
#include "dsp/CStateVariableFilter.h"

namespace quibplug {

class CReverbPlugin final : public CEffectBase {
public:
    CReverbPlugin();

private:
    struct Channel {
        CStateVariableFilter lowCut;
        CStateVariableFilter highCut;
        CDelayLine preDelay;
        CDelayTap preDelayTap;
        CDiffuser diffuser;
    };

    void SampleRateChanged() noexcept override;
    std::int32_t TailFrames() const noexcept override;
    void Clear() noexcept override;
    void TickEffect(bool changed) noexcept override;
    void SnapEffect() noexcept override;
    float RenderWet(StereoInput input, float* left, float* right, int frames) noexcept override;
    int MemoryFrames() const noexcept override;

    NetworkSetting Setting() const noexcept;
    float LateGain() const noexcept;
    float Diffusion() const noexcept;
    int PreDelayFrames() const noexcept;
    template <typename Move>
    void UpdateControls(Move move) noexcept;
    void Enter(Channel& channel, const float* input, float* samples, int frames) noexcept;

    std::array<Channel, 2> m_channels;
    CEarlyReflections m_early;
    CFeedbackNetwork m_network;
    Room m_room;    // the present one
    Room m_coming;  // the same, or where the cross-fade leads
    CCrossFade m_fade;
    FilterCoefficients m_lowCut{};
    FilterCoefficients m_highCut{};
    Ramp m_earlyGain;
    Ramp m_late;
};

}  // namespace quibplug
