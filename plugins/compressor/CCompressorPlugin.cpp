// SPDX-License-Identifier: GPL-3.0-or-later
#include "compressor/CCompressorPlugin.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace quibplug {

namespace {

constexpr std::int32_t kUniqueId = vst2::FourCharacters('Q', 'b', 'C', 'o');
constexpr float kButterworth = 1.41421356f;
constexpr float kDecibelsPerOctave = 6.0205999f;
constexpr float kPercent = 0.01f;
constexpr float kMilli = 0.001f;
constexpr float kSilence = 1e-6f;
constexpr float kForgetReleases = 7.0f;  // a reduction falls to a thousandth of itself

PluginDescription Description() {
    return {"QUIB compressor",      kUniqueId,           1000, vst2::kPlugCategEffect, 2, 2,
            CompressorParameters(), CompressorPrograms()};
}

float GainOf(float decibels) noexcept { return Exp2(decibels * (1.0f / kDecibelsPerOctave)); }

void Raise(std::atomic<float>& highest, float value) noexcept {
    if (value > highest.load(std::memory_order_relaxed)) highest.store(value, std::memory_order_relaxed);
}

}  // namespace

CCompressorPlugin::CCompressorPlugin() : CEffectBase(Description()) {
    SampleRateChanged();
    Clear();
    SnapEffect();
}

void CCompressorPlugin::SampleRateChanged() noexcept {
    m_limiter.Allocate(SampleRate());
    Effect()->initialDelay = m_limiter.LatencyFrames();
}

void CCompressorPlugin::Clear() noexcept {
    m_detectors = {};
    m_limiter.Reset();
}

int CCompressorPlugin::MemoryFrames() const noexcept {
    const float longest = std::max(Parameters().Real(kCompressorRelease), Parameters().Real(kCompressorLimiterRelease));
    return m_limiter.LatencyFrames() + static_cast<int>(kForgetReleases * kMilli * longest * SampleRate());
}

std::int32_t CCompressorPlugin::TailFrames() const noexcept { return m_limiter.LatencyFrames(); }

void CCompressorPlugin::TickEffect(bool) noexcept {
    UpdateControls([](Ramp& ramp, float value) { ramp.Aim(value); });
}

void CCompressorPlugin::SnapEffect() noexcept {
    UpdateControls([](Ramp& ramp, float value) { ramp.Set(value); });
}

template <typename Move>
void CCompressorPlugin::UpdateControls(Move move) noexcept {
    const CSmoothedParameters& p = Parameters();
    m_threshold = p.Real(kCompressorThreshold);
    m_slope = 1.0f - 1.0f / p.Real(kCompressorRatio);
    m_knee = p.Real(kCompressorKnee);
    m_attack = OnePoleShare(kMilli * p.Real(kCompressorAttack), SampleRate());
    m_release = OnePoleShare(kMilli * p.Real(kCompressorRelease), SampleRate());
    m_limiterRelease = OnePoleShare(kMilli * p.Real(kCompressorLimiterRelease), SampleRate());
    m_lowCut = FilterCoefficients::FromFrequency(p.Real(kCompressorLowCut), kButterworth, SampleRate());
    move(m_makeUp, GainOf(p.Real(kCompressorMakeUp)));
    move(m_link, kPercent * p.Real(kCompressorLink));
    move(m_ceiling, GainOf(p.Real(kCompressorCeiling)));
}

// Static curve with a parabola through the knee, and decoupled smoothing in decibels: D. Giannoulis,
// M. Massberg, J. Reiss, "Digital dynamic range compressor design", JAES 60 (2012).
float CCompressorPlugin::WantedReduction(float magnitude) const noexcept {
    const float above = kDecibelsPerOctave * Log2(std::max(magnitude, kSilence)) - m_threshold;
    if (2.0f * above <= -m_knee) return 0.0f;
    if (2.0f * above >= m_knee) return m_slope * above;
    const float inKnee = above + 0.5f * m_knee;
    return m_slope * inKnee * inKnee / (2.0f * m_knee);
}

float CCompressorPlugin::Reduction(Detector& detector, float wanted) const noexcept {
    detector.peak = std::max(wanted, detector.peak - m_release * detector.peak);
    detector.reduction += m_attack * (detector.peak - detector.reduction);
    return detector.reduction;
}

float CCompressorPlugin::RenderWet(StereoInput input, float* left, float* right, int frames) noexcept {
    float makeUp[kMaximumTickFrames];
    float link[kMaximumTickFrames];
    m_makeUp.Fill(makeUp, TickOffset(), frames, TickFrames());
    m_link.Fill(link, TickOffset(), frames, TickFrames());
    float loudest = 0.0f;
    float reduction = 0.0f;
    for (int i = 0; i < frames; ++i) {
        const float measuredLeft = std::fabs(m_detectors[0].lowCut.Process(input.left[i], m_lowCut).highPass);
        const float measuredRight = std::fabs(m_detectors[1].lowCut.Process(input.right[i], m_lowCut).highPass);
        const float louder = std::max(measuredLeft, measuredRight);
        const float forLeft = WantedReduction(measuredLeft + link[i] * (louder - measuredLeft));
        const float forRight = WantedReduction(measuredRight + link[i] * (louder - measuredRight));
        const float reductionLeft = Reduction(m_detectors[0], forLeft);
        const float reductionRight = Reduction(m_detectors[1], forRight);
        left[i] = input.left[i] * makeUp[i] * GainOf(-reductionLeft);
        right[i] = input.right[i] * makeUp[i] * GainOf(-reductionRight);
        loudest = std::max(loudest, louder);
        reduction = std::max({reduction, reductionLeft, reductionRight});
    }
    Raise(m_loudest, loudest);
    Raise(m_mostReduction, reduction);
    return 0.0f;
}

// A maximum that is asked for just now may count twice.
bool CCompressorPlugin::TellMeasured(vst2::Measured& told) noexcept {
    const float loudest = m_loudest.exchange(0.0f, std::memory_order_relaxed);
    told.level = kDecibelsPerOctave * Log2(std::max(loudest, kSilence));
    told.reduction = m_mostReduction.exchange(0.0f, std::memory_order_relaxed);
    return true;
}

float CCompressorPlugin::Finish(float* left, float* right, int frames) noexcept {
    float ceilings[kMaximumTickFrames];
    m_ceiling.Fill(ceilings, TickOffset(), frames, TickFrames());
    return m_limiter.Process(left, right, ceilings, m_limiterRelease, frames);
}

}  // namespace quibplug

VST2_EXPORT vst2::AEffect* VSTPluginMain(vst2::HostCallback host) {
    if (host == nullptr) return nullptr;
    try {
        auto plugin = std::make_unique<quibplug::CCompressorPlugin>();
        return plugin.release()->Effect();
    } catch (...) {
        return nullptr;
    }
}
