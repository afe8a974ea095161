// SPDX-License-Identifier: GPL-3.0-or-later
#include "dsp/CDiffuser.h"

#include <algorithm>
#include <cmath>

#include "dsp/CPluginBase.h"

namespace quibplug {

void CDiffuser::Allocate(const std::array<float, kStages>& milliseconds, float sampleRate) noexcept {
    m_sampleRate = sampleRate;
    for (std::size_t i = 0; i < kStages; ++i) {
        const auto frames = static_cast<int>(std::lround(0.001f * milliseconds[i] * sampleRate));
        m_stages[i].line.Allocate(frames);
        m_stages[i].delay = std::min(frames, m_stages[i].line.LongestDelay());
    }
}

void CDiffuser::Clear() noexcept {
    for (Stage& stage : m_stages) stage.line.Clear();
}

int CDiffuser::Frames() const noexcept {
    int frames = 0;
    for (const Stage& stage : m_stages) frames += stage.delay;
    return frames;
}

// What comes round within a stage falls by g each time.
float CDiffuser::GainOf(const Stage& stage, float gain, float ringSeconds) const noexcept {
    return std::min(gain, FallOf60Decibels(stage.delay, ringSeconds, m_sampleRate));
}

void CDiffuser::Aim(float gain, float ringSeconds) noexcept {
    for (Stage& stage : m_stages) stage.gain.Aim(GainOf(stage, gain, ringSeconds));
}

void CDiffuser::Snap(float gain, float ringSeconds) noexcept {
    for (Stage& stage : m_stages) stage.gain.Set(GainOf(stage, gain, ringSeconds));
}

void CDiffuser::Process(float* samples, std::size_t first, std::size_t last, TickSpan span) noexcept {
    float delayed[CPluginBase::kMaximumTickFrames];
    float inner[CPluginBase::kMaximumTickFrames];
    float gains[CPluginBase::kMaximumTickFrames];
    for (std::size_t s = first; s < last; ++s) {
        Stage& stage = m_stages[s];
        stage.gain.Fill(gains, span.offset, span.frames, span.tickFrames);
        stage.line.Read(delayed, stage.delay, span.frames);
        for (int i = 0; i < span.frames; ++i) {
            inner[i] = samples[i] + gains[i] * delayed[i];
            samples[i] = delayed[i] - gains[i] * inner[i];
        }
        stage.line.Write(inner, span.frames);
    }
}

}  // namespace quibplug
