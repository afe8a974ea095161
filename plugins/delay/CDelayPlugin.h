// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// "QUIB delay": a stereo delay of note values at the host's tempo or of milliseconds, with filters
// and saturation in its feedback, and ping-pong. The first repeat is the input itself; each further
// one passes the feedback once more. See CPluginBase for its threads.

#include "dsp/CDelayTap.h"
#include "dsp/CEffectBase.h"
#include "dsp/CHostTime.h"
#include "dsp/CStateVariableFilter.h"

namespace quibplug {

class CDelayPlugin final : public CEffectBase {
public:
    explicit CDelayPlugin(vst2::HostCallback host);

private:
    struct Channel {
        CDelayLine line;
        CDelayTap tap;
        CStateVariableFilter lowCut;
        CStateVariableFilter highCut;
    };

    void SampleRateChanged() noexcept override;
    void BeginBlock() noexcept override;
    std::int32_t TailFrames() const noexcept override;
    int InEffect(int parameter) const noexcept override;
    void Clear() noexcept override;
    void TickEffect(bool changed) noexcept override;
    void SnapEffect() noexcept override;
    float RenderWet(StereoInput input, float* left, float* right, int frames) noexcept override;
    int MemoryFrames() const noexcept override;

    int FramesOf(double seconds) const noexcept;
    double SecondsOf(bool synchronised, int note, double milliseconds) const noexcept;
    int LeftFrames() const noexcept;
    int RightFrames() const noexcept;
    template <typename Move>
    void UpdateControls(Move move) noexcept;
    void FeedBack(Channel& channel, float* samples, int frames) const noexcept;

    CHostTime m_time;
    Channel m_left;
    Channel m_right;
    FilterCoefficients m_lowCut{};
    FilterCoefficients m_highCut{};
    Ramp m_feedback;
    Ramp m_pingPong;
    Ramp m_drive;
};

}  // namespace quibplug
