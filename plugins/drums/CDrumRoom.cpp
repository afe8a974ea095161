// SPDX-License-Identifier: GPL-3.0-or-later
#include "drums/CDrumRoom.h"

#include <algorithm>
#include <cmath>

#include "dsp/CPluginBase.h"

namespace quibplug {

namespace {

constexpr float kButterworth = 1.41421356f;  // damping, 1 / Q
constexpr float kLowCutHertz = 220.0f;
constexpr float kDecayOfMetre = 0.09f;  // seconds
constexpr float kHighDecay = 0.5f;      // of the decay, above kDampingHertz
constexpr float kDampingHertz = 5000.0f;
constexpr float kDiffusion = 0.6f;
constexpr float kDiffuserRing = 0.4f;  // of the decay, at most
constexpr float kEarlyGain = 0.8f;
constexpr float kLateGain = 0.5f;
constexpr float kFadeSeconds = 0.08f;
// Milliseconds of the all-passes of each side; only the first stages are used.
constexpr std::size_t kStages = 4;
constexpr std::array<float, CDiffuser::kStages> kDiffusers[2] = {{1.91f, 3.37f, 5.83f, 9.71f, 1.0f, 1.0f},
                                                                 {2.17f, 3.01f, 6.47f, 8.89f, 1.0f, 1.0f}};

}  // namespace

void CDrumRoom::Allocate(float sampleRate) noexcept {
    m_sampleRate = sampleRate;
    m_lowCut = FilterCoefficients::FromFrequency(kLowCutHertz, kButterworth, sampleRate);
    for (std::size_t side = 0; side < 2; ++side) m_diffusers[side].Allocate(kDiffusers[side], sampleRate);
    m_early.Allocate(kLargestMetres, sampleRate);
    m_network.Allocate(kLargestMetres, sampleRate);
    m_laidMetres = 0.0f;
}

void CDrumRoom::Clear() noexcept {
    for (CStateVariableFilter& filter : m_lowCuts) filter.Reset();
    for (CDiffuser& diffuser : m_diffusers) diffuser.Clear();
    m_early.Clear();
    m_network.Clear();
    m_watch.Reset();
    m_awake = false;
}

NetworkSetting CDrumRoom::Setting() const noexcept {
    const float decay = kDecayOfMetre * m_metres;
    return {decay, kHighDecay * decay, kDampingHertz, 0.0f, 0.0f};
}

// A long decay is as loud as a short one.
float CDrumRoom::LateGain() const noexcept {
    const float fall = FallOf60Decibels(Room::LineMetres(m_metres) / kSpeedOfSound, kDecayOfMetre * m_metres, 1.0f);
    return kLateGain * std::sqrt(1.0f - fall * fall);
}

void CDrumRoom::Snap(float level, float metres) noexcept {
    m_level.Set(level);
    if (metres == m_laidMetres && !m_fade.Running()) return;
    m_metres = m_laidMetres = metres;
    m_room = m_coming = Room::OfSize(metres, m_sampleRate);
    m_fade.Stop();
    m_network.Snap(m_room, Setting());
    for (CDiffuser& diffuser : m_diffusers) diffuser.Snap(kDiffusion, kDiffuserRing * kDecayOfMetre * metres);
}

void CDrumRoom::Tick(float level, float metres, int tickFrames) noexcept {
    if (!m_awake) {
        const float before = m_level.end;
        Snap(before, metres);
        m_level.Aim(level);
        return;
    }
    m_level.Aim(level);
    const bool changed = metres != m_metres;
    m_metres = metres;
    if (!m_fade.Running() && metres != m_laidMetres) {
        m_laidMetres = metres;
        m_coming = Room::OfSize(metres, m_sampleRate);
        m_fade.Start(kFadeSeconds, m_sampleRate);
    }
    m_network.Tick(m_room, m_coming, m_fade.Running() ? m_fade.ShareAfter(tickFrames) : 0.0f, Setting(), changed,
                   tickFrames);
    for (CDiffuser& diffuser : m_diffusers) diffuser.Aim(kDiffusion, kDiffuserRing * kDecayOfMetre * metres);
    FallAsleepWhenQuiet(tickFrames);
}

void CDrumRoom::FallAsleepWhenQuiet(int tickFrames) noexcept {
    m_watch.Tick(tickFrames);
    const int longest = *std::max_element(m_coming.lines.begin(), m_coming.lines.end());
    if (!On() || m_watch.QuietFrames() > 2 * longest + m_diffusers[0].Frames()) Clear();
}

void CDrumRoom::Render(float* fromLeft, float* fromRight, float* left, float* right, TickSpan span) noexcept {
    float* const from[2] = {fromLeft, fromRight};
    for (const float* side : from) m_watch.Note(side, span.frames);
    m_awake = m_awake || m_watch.Peak() > 0.0f;
    if (!m_awake) return;
    float storage[CPluginBase::kMaximumTickFrames];
    float* shares = nullptr;
    if (m_fade.Running()) m_fade.Fill(shares = storage, span.frames);
    float entered[2][CPluginBase::kMaximumTickFrames];
    for (std::size_t side = 0; side < 2; ++side) {
        for (int i = 0; i < span.frames; ++i) {
            entered[side][i] = m_lowCuts[side].Process(from[side][i], m_lowCut).highPass;
        }
        std::copy_n(entered[side], span.frames, from[side]);
        m_diffusers[side].Process(from[side], 0, kStages, span);
    }
    m_network.Render(m_room, m_coming, shares, fromLeft, fromRight, span);
    for (const float* side : from) m_watch.Note(side, span.frames);
    float gains[CPluginBase::kMaximumTickFrames];
    m_level.Fill(gains, span.offset, span.frames, span.tickFrames);
    const float late = LateGain();
    for (int i = 0; i < span.frames; ++i) {
        left[i] += gains[i] * late * fromLeft[i];
        right[i] += gains[i] * late * fromRight[i];
        gains[i] *= kEarlyGain;
    }
    m_early.Add(m_room, m_coming, shares, gains, left, right, span.frames);
    m_early.Write(entered[0], entered[1], span.frames);
    if (shares == nullptr) return;
    m_fade.Advance(span.frames);
    if (!m_fade.Running()) m_room = m_coming;
}

}  // namespace quibplug
