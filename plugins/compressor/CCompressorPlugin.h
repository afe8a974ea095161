// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// "QUIB compressor": a feed-forward compressor with a soft knee, mixed with the dry sound if wanted,
// and after the level a limiter that holds the ceiling. The limiter's look-ahead is the plug-in's
// latency. See CPluginBase for its threads.

#include <array>
#include <atomic>

#include "compressor/CLookAheadLimiter.h"
#include "compressor/CompressorParameters.h"
#include "dsp/CEffectBase.h"
#include "dsp/CStateVariableFilter.h"

namespace quibplug {

class CCompressorPlugin final : public CEffectBase {
public:
    CCompressorPlugin();

private:
    // Gain reduction in decibels: falls by the release, then follows by the attack.
    struct Detector {
        CStateVariableFilter lowCut;
        float peak = 0.0f;
        float reduction = 0.0f;
    };

    void SampleRateChanged() noexcept override;
    std::int32_t TailFrames() const noexcept override;
    void Clear() noexcept override;
    void TickEffect(bool changed) noexcept override;
    void SnapEffect() noexcept override;
    float RenderWet(StereoInput input, float* left, float* right, int frames) noexcept override;
    float Finish(float* left, float* right, int frames) noexcept override;
    int MemoryFrames() const noexcept override;
    bool TellMeasured(vst2::Measured& told) noexcept override;

    template <typename Move>
    void UpdateControls(Move move) noexcept;
    float WantedReduction(float magnitude) const noexcept;
    float Reduction(Detector& detector, float wanted) const noexcept;

    std::array<Detector, 2> m_detectors;
    CLookAheadLimiter m_limiter;
    FilterCoefficients m_lowCut{};
    float m_threshold = 0.0f;  // decibels
    float m_slope = 0.0f;      // decibels of reduction per decibel above the threshold
    float m_knee = 0.0f;       // decibels
    float m_attack = 1.0f;     // shares per frame
    float m_release = 1.0f;
    float m_limiterRelease = 1.0f;
    Ramp m_makeUp;
    Ramp m_link;
    Ramp m_ceiling;
    // Since the window asked last; written by the render thread.
    std::atomic<float> m_loudest{0.0f};        // linear
    std::atomic<float> m_mostReduction{0.0f};  // decibels
};

}  // namespace quibplug
