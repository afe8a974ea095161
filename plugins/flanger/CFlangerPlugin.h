// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// "QUIB flanger": a short delay that swings by itself or with the song, fed back to itself through a
// saturator. The wet sound is the delayed one alone: the comb appears where it meets the dry sound, in
// the mix or beside a send. See CPluginBase for its threads.

#include <array>

#include "dsp/CEffectBase.h"
#include "dsp/CHostTime.h"
#include "dsp/CStateVariableFilter.h"
#include "dsp/SwingingTap.h"
#include "flanger/FlangerParameters.h"

namespace quibplug {

class CFlangerPlugin final : public CEffectBase {
public:
    explicit CFlangerPlugin(vst2::HostCallback host);

private:
    struct Channel {
        CDelayLine line;
        CStateVariableFilter lowCut;
        CSwingingTap tap;
    };

    void SampleRateChanged() noexcept override;
    void BeginBlock() noexcept override { m_time.Read(Effect()); }
    std::int32_t TailFrames() const noexcept override;
    void Clear() noexcept override;
    void TickEffect(bool changed) noexcept override;
    void SnapEffect() noexcept override;
    float RenderWet(StereoInput input, float* left, float* right, int frames) noexcept override;
    int MemoryFrames() const noexcept override;

    float SwingRate() const noexcept;
    float DelayOf(bool rightSide) const noexcept;
    void UpdateFilter() noexcept;
    float RenderChannel(Channel& channel, const float* input, float* output, int frames) noexcept;

    CHostTime m_time;
    CSwing m_swing;
    std::array<Channel, 2> m_channels;
    Ramp m_feedback;
    FilterCoefficients m_lowCut{};
};

}  // namespace quibplug
