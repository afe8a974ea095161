// SPDX-License-Identifier: GPL-3.0-or-later
#include "flanger/CFlangerPlugin.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace quibplug {

namespace {

constexpr std::int32_t kUniqueId = vst2::FourCharacters('Q', 'b', 'F', 'l');
constexpr float kLongestSeconds = 0.021f;
constexpr float kFilterMemorySeconds = 0.1f;
constexpr float kButterworth = 1.41421356f;
constexpr float kShortestDelay = 2.0f;  // frames
constexpr float kPercent = 0.01f;
constexpr float kHeadroom = 4.0f;  // where the feedback saturates

PluginDescription Description() {
    return {"QUIB flanger", kUniqueId, 1000, vst2::kPlugCategEffect, 2, 2, FlangerParameters(), FlangerPrograms()};
}

}  // namespace

CFlangerPlugin::CFlangerPlugin(vst2::HostCallback host) : CEffectBase(Description()), m_time(host) {
    SampleRateChanged();
    Clear();
    SnapEffect();
}

void CFlangerPlugin::SampleRateChanged() noexcept {
    for (Channel& channel : m_channels) channel.line.Allocate(static_cast<int>(kLongestSeconds * SampleRate()) + 8);
}

void CFlangerPlugin::Clear() noexcept {
    m_swing.Reset();
    for (Channel& channel : m_channels) {
        channel.line.Clear();
        channel.lowCut.Reset();
    }
}

int CFlangerPlugin::MemoryFrames() const noexcept {
    return static_cast<int>((kLongestSeconds + kFilterMemorySeconds) * SampleRate());
}

std::int32_t CFlangerPlugin::TailFrames() const noexcept {
    const double feedback = std::max(0.01 * std::fabs(static_cast<double>(SetTo(kFlangerFeedback))), 1e-6);
    const double repeats = 2.0 + std::ceil(std::log(1e-5) / std::log(feedback));  // down by 100 dB
    const double seconds = 0.001 * static_cast<double>(SetTo(kFlangerDelay) + SetTo(kFlangerDepth));
    const double memory = static_cast<double>(kFilterMemorySeconds);
    return static_cast<std::int32_t>((repeats * seconds + memory) * static_cast<double>(SampleRate()));
}

float CFlangerPlugin::SwingRate() const noexcept {
    const CSmoothedParameters& p = Parameters();
    if (p.Step(kFlangerSync) == 0) return p.Real(kFlangerRate);
    return static_cast<float>(m_time.Tempo() / 60.0) / SweepQuarters(p.Step(kFlangerNote));
}

float CFlangerPlugin::DelayOf(bool rightSide) const noexcept {
    const CSmoothedParameters& p = Parameters();
    const float turns = rightSide ? p.Real(kFlangerStereo) / 360.0f : 0.0f;
    const float swing = m_swing.At(turns, static_cast<SwingShape>(p.Step(kFlangerShape)));
    const float frames = 0.001f * (p.Real(kFlangerDelay) + p.Real(kFlangerDepth) * swing) * SampleRate();
    return std::max(frames, kShortestDelay);
}

void CFlangerPlugin::UpdateFilter() noexcept {
    m_lowCut = FilterCoefficients::FromFrequency(Parameters().Real(kFlangerLowCut), kButterworth, SampleRate());
}

void CFlangerPlugin::TickEffect(bool) noexcept {
    m_swing.Advance(SwingRate(), TickRate());
    m_channels[0].tap.Aim(DelayOf(false), TickFrames());
    m_channels[1].tap.Aim(DelayOf(true), TickFrames());
    m_feedback.Aim(kPercent * Parameters().Real(kFlangerFeedback));
    UpdateFilter();
}

void CFlangerPlugin::SnapEffect() noexcept {
    m_channels[0].tap.Snap(DelayOf(false));
    m_channels[1].tap.Snap(DelayOf(true));
    m_feedback.Set(kPercent * Parameters().Real(kFlangerFeedback));
    UpdateFilter();
}

// Sample by sample: the delay may be shorter than a run of frames.
float CFlangerPlugin::RenderChannel(Channel& channel, const float* input, float* output, int frames) noexcept {
    float delays[kMaximumTickFrames];
    float feedback[kMaximumTickFrames];
    channel.tap.Fill(delays, TickOffset(), frames, TickFrames());
    m_feedback.Fill(feedback, TickOffset(), frames, TickFrames());
    float peak = 0.0f;
    for (int i = 0; i < frames; ++i) {
        output[i] = channel.line.At(static_cast<double>(std::max(delays[i], kShortestDelay)));
        const float clean = channel.lowCut.Process(input[i], m_lowCut).highPass;
        const float back = kHeadroom * Saturate(output[i] * (1.0f / kHeadroom));
        const float entering = clean + feedback[i] * back;
        channel.line.Write(&entering, 1);
        peak = std::max(peak, std::fabs(entering));
    }
    return peak;
}

float CFlangerPlugin::RenderWet(StereoInput input, float* left, float* right, int frames) noexcept {
    const float leftPeak = RenderChannel(m_channels[0], input.left, left, frames);
    return std::max(leftPeak, RenderChannel(m_channels[1], input.right, right, frames));
}

}  // namespace quibplug

VST2_EXPORT vst2::AEffect* VSTPluginMain(vst2::HostCallback host) {
    if (host == nullptr) return nullptr;
    try {
        auto plugin = std::make_unique<quibplug::CFlangerPlugin>(host);
        return plugin.release()->Effect();
    } catch (...) {
        return nullptr;
    }
}
