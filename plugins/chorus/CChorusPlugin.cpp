// SPDX-License-Identifier: GPL-3.0-or-later
#include "chorus/CChorusPlugin.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace quibplug {

namespace {

constexpr std::int32_t kUniqueId = vst2::FourCharacters('Q', 'b', 'C', 'h');
constexpr float kLongestSeconds = 0.041f;
constexpr float kFilterMemorySeconds = 0.1f;
constexpr float kVoiceSeconds = 0.02f;  // to bring a voice in or out
constexpr float kButterworth = 1.41421356f;
constexpr float kDegreesOfTurn = 1.0f / 360.0f;
// In this order any number of voices is spread about the circle.
constexpr float kVoiceTurns[kMostChorusVoices] = {0.0f, 0.5f, 0.25f, 0.75f};

PluginDescription Description() {
    return {"QUIB chorus", kUniqueId, 1000, vst2::kPlugCategEffect, 2, 2, ChorusParameters(), ChorusPrograms()};
}

}  // namespace

CChorusPlugin::CChorusPlugin() : CEffectBase(Description()) {
    SampleRateChanged();
    Clear();
    SnapEffect();
}

void CChorusPlugin::SampleRateChanged() noexcept {
    for (Channel& channel : m_channels) channel.line.Allocate(static_cast<int>(kLongestSeconds * SampleRate()) + 8);
}

void CChorusPlugin::Clear() noexcept {
    m_swing.Reset();
    for (Channel& channel : m_channels) {
        channel.line.Clear();
        channel.lowCut.Reset();
        channel.highCut.Reset();
    }
}

int CChorusPlugin::MemoryFrames() const noexcept {
    return static_cast<int>((kLongestSeconds + kFilterMemorySeconds) * SampleRate());
}

float CChorusPlugin::DelayOf(int voice, bool rightSide) const noexcept {
    const CSmoothedParameters& p = Parameters();
    const float spread = rightSide ? p.Real(kChorusSpread) * kDegreesOfTurn : 0.0f;
    const float swing = m_swing.At(kVoiceTurns[voice] + spread, static_cast<SwingShape>(p.Step(kChorusShape)));
    const float frames = 0.001f * (p.Real(kChorusDelay) + p.Real(kChorusDepth) * swing) * SampleRate();
    return std::min(frames, static_cast<float>(m_channels[0].line.LongestDelay() - 2));
}

// Copies that are not in step add up in power.
float CChorusPlugin::GainOf(int voice) const noexcept {
    const int voices = Parameters().Step(kChorusVoices);
    return voice < voices ? 1.0f / std::sqrt(static_cast<float>(voices)) : 0.0f;
}

void CChorusPlugin::UpdateFilters() noexcept {
    m_lowCut = FilterCoefficients::FromFrequency(Parameters().Real(kChorusLowCut), kButterworth, SampleRate());
    m_highCut = FilterCoefficients::FromFrequency(Parameters().Real(kChorusHighCut), kButterworth, SampleRate());
}

void CChorusPlugin::TickEffect(bool) noexcept {
    m_swing.Advance(Parameters().Real(kChorusRate), TickRate());
    const float share = OnePoleShare(kVoiceSeconds, TickRate());
    for (int voice = 0; voice < kMostChorusVoices; ++voice) {
        const auto index = static_cast<std::size_t>(voice);
        const float distance = GainOf(voice) - m_gains[index].end;
        m_gains[index].Aim(std::fabs(distance) < 1e-5f ? GainOf(voice) : m_gains[index].end + share * distance);
        m_channels[0].taps[index].Aim(DelayOf(voice, false), TickFrames());
        m_channels[1].taps[index].Aim(DelayOf(voice, true), TickFrames());
    }
    UpdateFilters();
}

void CChorusPlugin::SnapEffect() noexcept {
    for (int voice = 0; voice < kMostChorusVoices; ++voice) {
        const auto index = static_cast<std::size_t>(voice);
        m_gains[index].Set(GainOf(voice));
        m_channels[0].taps[index].Snap(DelayOf(voice, false));
        m_channels[1].taps[index].Snap(DelayOf(voice, true));
    }
    UpdateFilters();
}

float CChorusPlugin::RenderChannel(Channel& channel, const float* input, float* output, int frames) noexcept {
    std::fill_n(output, frames, 0.0f);
    float delays[kMaximumTickFrames];
    float gains[kMaximumTickFrames];
    for (std::size_t voice = 0; voice < channel.taps.size(); ++voice) {
        if (m_gains[voice].Zero()) continue;
        channel.taps[voice].Fill(delays, TickOffset(), frames, TickFrames());
        m_gains[voice].Fill(gains, TickOffset(), frames, TickFrames());
        for (int i = 0; i < frames; ++i) {
            output[i] += gains[i] * channel.line.At(static_cast<double>(delays[i]) - i);
        }
    }
    float filtered[kMaximumTickFrames];
    float peak = 0.0f;
    for (int i = 0; i < frames; ++i) {
        const float high = channel.lowCut.Process(input[i], m_lowCut).highPass;
        filtered[i] = channel.highCut.Process(high, m_highCut).lowPass;
        peak = std::max(peak, std::fabs(filtered[i]));
    }
    channel.line.Write(filtered, frames);
    return peak;
}

float CChorusPlugin::RenderWet(StereoInput input, float* left, float* right, int frames) noexcept {
    const float leftPeak = RenderChannel(m_channels[0], input.left, left, frames);
    return std::max(leftPeak, RenderChannel(m_channels[1], input.right, right, frames));
}

}  // namespace quibplug

VST2_EXPORT vst2::AEffect* VSTPluginMain(vst2::HostCallback host) {
    if (host == nullptr) return nullptr;
    try {
        auto plugin = std::make_unique<quibplug::CChorusPlugin>();
        return plugin.release()->Effect();
    } catch (...) {
        return nullptr;
    }
}
