// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// "QUIB chorus": up to four copies a side of the filtered input, each read at a delay that swings. The
// copies of a side swing a quarter turn apart, the two sides by the spread. See CPluginBase for its
// threads.

#include <array>

#include "chorus/ChorusParameters.h"
#include "dsp/CEffectBase.h"
#include "dsp/CStateVariableFilter.h"
#include "dsp/SwingingTap.h"

namespace quibplug {

class CChorusPlugin final : public CEffectBase {
public:
    CChorusPlugin();

private:
    using VoiceTaps = std::array<CSwingingTap, kMostChorusVoices>;
    struct Channel {
        CDelayLine line;
        CStateVariableFilter lowCut;
        CStateVariableFilter highCut;
        VoiceTaps taps;
    };

    void SampleRateChanged() noexcept override;
    std::int32_t TailFrames() const noexcept override { return MemoryFrames(); }
    void Clear() noexcept override;
    void TickEffect(bool changed) noexcept override;
    void SnapEffect() noexcept override;
    float RenderWet(StereoInput input, float* left, float* right, int frames) noexcept override;
    int MemoryFrames() const noexcept override;

    float DelayOf(int voice, bool rightSide) const noexcept;
    float GainOf(int voice) const noexcept;
    void UpdateFilters() noexcept;
    float RenderChannel(Channel& channel, const float* input, float* output, int frames) noexcept;

    CSwing m_swing;
    std::array<Channel, 2> m_channels;
    std::array<Ramp, kMostChorusVoices> m_gains;
    FilterCoefficients m_lowCut{};
    FilterCoefficients m_highCut{};
};

}  // namespace quibplug
