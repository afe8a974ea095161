// SPDX-License-Identifier: GPL-3.0-or-later
#include "reverb/CDiffuser.h"

#include <algorithm>

#include "dsp/CPluginBase.h"

namespace quibplug {

void CDiffuser::Allocate(const std::array<float, kStages>& milliseconds, float sampleRate) noexcept {
    for (std::size_t i = 0; i < kStages; ++i) {
        const auto frames = static_cast<int>(0.001f * milliseconds[i] * sampleRate + 0.5f);
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

void CDiffuser::Process(float* samples, const float* gains, int frames, std::size_t first, std::size_t last) noexcept {
    float delayed[CPluginBase::kMaximumTickFrames];
    float inner[CPluginBase::kMaximumTickFrames];
    for (std::size_t s = first; s < last; ++s) {
        Stage& stage = m_stages[s];
        stage.line.Read(delayed, stage.delay, frames);
        for (int i = 0; i < frames; ++i) {
            inner[i] = samples[i] + gains[i] * delayed[i];
            samples[i] = delayed[i] - gains[i] * inner[i];
        }
        stage.line.Write(inner, frames);
    }
}

}  // namespace quibplug
