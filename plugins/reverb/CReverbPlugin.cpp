// SPDX-License-Identifier: GPL-3.0-or-later
#include "reverb/CReverbPlugin.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "reverb/ReverbParameters.h"

namespace quibplug {

namespace {

constexpr std::int32_t kUniqueId = vst2::FourCharacters('Q', 'b', 'R', 'v');
constexpr float kPercent = 0.01f;
constexpr float kButterworth = 1.41421356f;  // damping, 1 / Q
constexpr float kDiffuserRing = 0.4f;        // of the decay time, at most
constexpr float kMostDiffusion = 0.72f;
constexpr float kFadeSeconds = 0.08f;
constexpr float kEarlyGain = 0.7f;
constexpr float kLateGain = 0.7f;
constexpr float kFilterMemorySeconds = 0.1f;
constexpr float kTailDecibels = 100.0f;
constexpr std::size_t kEarlyStages = 2;

// Milliseconds of the all-passes of each side.
constexpr std::array<std::array<float, CDiffuser::kStages>, 2> kDiffusers = {
    {{3.17f, 5.31f, 8.73f, 13.9f, 22.7f, 36.1f}, {3.53f, 4.87f, 9.41f, 12.7f, 25.3f, 33.7f}}};

PluginDescription Description() {
    return {"QUIB reverb", kUniqueId, 1000, vst2::kPlugCategEffect, 2, 2, ReverbParameters(), ReverbPrograms()};
}

}  // namespace

CReverbPlugin::CReverbPlugin() : CEffectBase(Description()) {
    SampleRateChanged();
    Clear();
    SnapEffect();
}

void CReverbPlugin::SampleRateChanged() noexcept {
    for (std::size_t side = 0; side < m_channels.size(); ++side) {
        Channel& channel = m_channels[side];
        channel.preDelay.Allocate(static_cast<int>(0.001f * kReverbLongestPreDelayMs * SampleRate()) +
                                  kMaximumTickFrames);
        channel.diffuser.Allocate(kDiffusers[side], SampleRate());
    }
    m_early.Allocate(kReverbLargestSize, SampleRate());
    m_network.Allocate(kReverbLargestSize, SampleRate());
}

void CReverbPlugin::Clear() noexcept {
    for (Channel& channel : m_channels) {
        channel.lowCut.Reset();
        channel.highCut.Reset();
        channel.preDelay.Clear();
        channel.diffuser.Clear();
    }
    m_early.Clear();
    m_network.Clear();
}

NetworkSetting CReverbPlugin::Setting() const noexcept {
    const CSmoothedParameters& p = Parameters();
    const float decay = p.Real(kReverbDecay);
    return {decay, decay * kPercent * p.Real(kReverbHighDecay), p.Real(kReverbDamping),
            kPercent * p.Real(kReverbModulation), p.Real(kReverbModulationRate)};
}

// The energy of a decaying sound is that of its first pass over 1 - g^2, g the gain of a pass: taken
// back here, so that a long decay is as loud as a short one.
float CReverbPlugin::LateGain() const noexcept {
    const float passSeconds = Room::LineMetres(Parameters().Real(kReverbSize)) / kSpeedOfSound;
    const float fall = FallOf60Decibels(passSeconds, Parameters().Real(kReverbDecay), 1.0f);
    return kLateGain * Parameters().Real(kReverbLate) * std::sqrt(1.0f - fall * fall);
}

float CReverbPlugin::Diffusion() const noexcept {
    return kMostDiffusion * kPercent * Parameters().Real(kReverbDiffusion);
}

// A pre-delay of 0 is one tick: less than 0.4 ms.
int CReverbPlugin::PreDelayFrames() const noexcept {
    const auto frames = static_cast<int>(std::lround(0.001f * SetTo(kReverbPreDelay) * SampleRate()));
    return std::clamp(frames, TickFrames(), m_channels[0].preDelay.LongestDelay());
}

std::int32_t CReverbPlugin::TailFrames() const noexcept {
    const float seconds = SetTo(kReverbDecay) * kTailDecibels / 60.0f + 0.001f * SetTo(kReverbPreDelay) +
                          2.0f * Room::LineMetres(SetTo(kReverbSize)) / kSpeedOfSound + kFilterMemorySeconds;
    return static_cast<std::int32_t>(seconds * SampleRate());
}

int CReverbPlugin::MemoryFrames() const noexcept {
    const auto longest = [](const auto& frames) { return *std::max_element(frames.begin(), frames.end()); };
    return m_channels[0].preDelayTap.Longest() + m_channels[0].diffuser.Frames() +
           std::max(longest(m_room.lines), longest(m_coming.lines)) +
           static_cast<int>(kFilterMemorySeconds * SampleRate());
}

void CReverbPlugin::TickEffect(bool changed) noexcept {
    if (!m_fade.Running()) {
        m_coming = Room::OfSize(SetTo(kReverbSize), SampleRate());
        if (!(m_coming == m_room)) m_fade.Start(kFadeSeconds, SampleRate());
    }
    const float share = m_fade.Running() ? m_fade.ShareAfter(TickFrames()) : 0.0f;
    m_network.Tick(m_room, m_coming, share, Setting(), changed, TickFrames());
    for (Channel& channel : m_channels) {
        channel.preDelayTap.Aim(PreDelayFrames(), TimeChange::kFade, SampleRate());
        channel.diffuser.Aim(Diffusion(), kDiffuserRing * Parameters().Real(kReverbDecay));
    }
    UpdateControls([](Ramp& ramp, float value) { ramp.Aim(value); });
}

void CReverbPlugin::SnapEffect() noexcept {
    m_room = m_coming = Room::OfSize(SetTo(kReverbSize), SampleRate());
    m_fade.Stop();
    m_network.Snap(m_room, Setting());
    for (Channel& channel : m_channels) {
        channel.preDelayTap.Snap(PreDelayFrames());
        channel.diffuser.Snap(Diffusion(), kDiffuserRing * Parameters().Real(kReverbDecay));
    }
    UpdateControls([](Ramp& ramp, float value) { ramp.Set(value); });
}

template <typename Move>
void CReverbPlugin::UpdateControls(Move move) noexcept {
    const CSmoothedParameters& p = Parameters();
    move(m_earlyGain, kEarlyGain * p.Real(kReverbEarly));
    move(m_late, LateGain());
    m_lowCut = FilterCoefficients::FromFrequency(p.Real(kReverbLowCut), kButterworth, SampleRate());
    m_highCut = FilterCoefficients::FromFrequency(p.Real(kReverbHighCut), kButterworth, SampleRate());
}

void CReverbPlugin::Enter(Channel& channel, const float* input, float* samples, int frames) noexcept {
    for (int i = 0; i < frames; ++i) {
        const float high = channel.lowCut.Process(input[i], m_lowCut).highPass;
        samples[i] = channel.highCut.Process(high, m_highCut).lowPass;
    }
    float cut[kMaximumTickFrames];
    std::copy_n(samples, frames, cut);
    channel.preDelayTap.Read(channel.preDelay, samples, frames);
    channel.preDelay.Write(cut, frames);
}

float CReverbPlugin::RenderWet(StereoInput input, float* left, float* right, int frames) noexcept {
    const TickSpan span{TickOffset(), frames, TickFrames()};
    float storage[kMaximumTickFrames];
    float* shares = nullptr;
    if (m_fade.Running()) m_fade.Fill(shares = storage, frames);
    float entered[2][kMaximumTickFrames];
    const std::array<const float*, 2> from = {input.left, input.right};
    const std::array<float*, 2> to = {left, right};
    for (std::size_t side = 0; side < 2; ++side) {
        Channel& channel = m_channels[side];
        Enter(channel, from[side], to[side], frames);
        channel.diffuser.Process(to[side], 0, kEarlyStages, span);
        std::copy_n(to[side], frames, entered[side]);
        channel.diffuser.Process(to[side], kEarlyStages, CDiffuser::kStages, span);
    }
    m_network.Render(m_room, m_coming, shares, left, right, span);

    float peak = 0.0f;
    float late[kMaximumTickFrames];
    m_late.Fill(late, TickOffset(), frames, TickFrames());
    for (int i = 0; i < frames; ++i) {
        peak = std::max(peak, std::max(std::fabs(left[i]), std::fabs(right[i])));
        left[i] *= late[i];
        right[i] *= late[i];
    }
    float early[kMaximumTickFrames];
    m_earlyGain.Fill(early, TickOffset(), frames, TickFrames());
    m_early.Add(m_room, m_coming, shares, early, left, right, frames);
    m_early.Write(entered[0], entered[1], frames);
    if (shares != nullptr) {
        m_fade.Advance(frames);
        if (!m_fade.Running()) m_room = m_coming;
    }
    return peak;
}

}  // namespace quibplug

VST2_EXPORT vst2::AEffect* VSTPluginMain(vst2::HostCallback host) {
    if (host == nullptr) return nullptr;
    try {
        auto plugin = std::make_unique<quibplug::CReverbPlugin>();
        return plugin.release()->Effect();
    } catch (...) {
        return nullptr;
    }
}
