// SPDX-License-Identifier: GPL-3.0-or-later
#include "synth/CStereoWidth.h"

#include "dsp/CPluginBase.h"

namespace quibplug {

namespace {

constexpr float kButterworth = 1.41421356f;  // damping, 1 / Q
constexpr float kLowCutHertz = 150.0f;
constexpr float kDiffusion = 0.55f;
constexpr float kRingSeconds = 1.0f;  // longer than the diffusion lets any stage ring
// Milliseconds of the all-passes; short enough for a pluck to stay one.
constexpr std::array<float, CDiffuser::kStages> kStages = {0.73f, 1.31f, 2.09f, 3.47f, 4.91f, 6.67f};

}  // namespace

void CStereoWidth::Allocate(float sampleRate) noexcept {
    m_diffuser.Allocate(kStages, sampleRate);
    m_diffuser.Snap(kDiffusion, kRingSeconds);
    m_lowCut = FilterCoefficients::FromFrequency(kLowCutHertz, kButterworth, sampleRate);
}

void CStereoWidth::Clear() noexcept {
    m_diffuser.Clear();
    m_filter.Reset();
    m_watch.Reset();
    m_awake = false;
}

void CStereoWidth::Tick(float width, int tickFrames) noexcept {
    m_width.Aim(width);
    if (!m_awake) return;
    m_watch.Tick(tickFrames);
    if (m_width.Zero() || m_watch.QuietFrames() > 2 * m_diffuser.Frames()) Clear();
}

void CStereoWidth::Render(float* left, float* right, TickSpan span) noexcept {
    if (m_width.Zero()) return;
    m_awake = true;
    float side[CPluginBase::kMaximumTickFrames];
    for (int i = 0; i < span.frames; ++i) side[i] = 0.5f * (left[i] + right[i]);
    m_watch.Note(side, span.frames);
    m_diffuser.Process(side, 0, CDiffuser::kStages, span);
    m_watch.Note(side, span.frames);
    float widths[CPluginBase::kMaximumTickFrames];
    m_width.Fill(widths, span.offset, span.frames, span.tickFrames);
    for (int i = 0; i < span.frames; ++i) {
        const float added = widths[i] * m_filter.Process(side[i], m_lowCut).highPass;
        left[i] += added;
        right[i] -= added;
    }
}

}  // namespace quibplug
