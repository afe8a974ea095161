// SPDX-License-Identifier: GPL-3.0-or-later
#include "dsp/CEffectBase.h"

#include <algorithm>
#include <cmath>

namespace quibplug {

namespace {

constexpr float kPercent = 0.01f;
constexpr float kInputFloor = 3e-8f;   // -150 dBFS
constexpr float kMemoryFloor = 1e-6f;  // -120 dBFS
constexpr float kCeiling = 16.0f;

// Within the ceiling, and a number.
float Checked(float sample) noexcept {
    return sample > -kCeiling ? (sample < kCeiling ? sample : kCeiling) : (sample <= -kCeiling ? -kCeiling : 0.0f);
}

bool Heard(float sample) noexcept { return std::fabs(sample) > kInputFloor; }

}  // namespace

float CEffectBase::Finish(float*, float*, int) noexcept { return 0.0f; }

void CEffectBase::Reset() noexcept {
    m_inputPeak = m_memoryPeak = 0.0f;
    m_quietFrames = 0;
    m_awake = false;
    Clear();
}

int CEffectBase::FramesToSleep(const float* const* inputs, int frames) const noexcept {
    for (int i = 0; i < frames; ++i) {
        if (Heard(inputs[0][i]) || Heard(inputs[1][i])) return i;
    }
    return frames;
}

void CEffectBase::WakeUp() noexcept {
    m_awake = true;
    ParametersSnapped();
}

void CEffectBase::ParametersSnapped() noexcept {
    UpdateGains([](Ramp& ramp, float value) { ramp.Set(value); });
    SnapEffect();
}

void CEffectBase::Tick(bool changed) noexcept {
    const bool quiet = m_inputPeak <= kInputFloor && m_memoryPeak <= kMemoryFloor;
    m_inputPeak = m_memoryPeak = 0.0f;
    m_quietFrames = quiet ? m_quietFrames + TickFrames() : 0;
    if (m_quietFrames > MemoryFrames()) {
        Reset();
        return;
    }
    UpdateGains([](Ramp& ramp, float value) { ramp.Aim(value); });
    TickEffect(changed);
}

template <typename Move>
void CEffectBase::UpdateGains(Move move) noexcept {
    const float level = Parameters().Real(kEffectLevel);
    const float mix = kPercent * Parameters().Real(kEffectMix);
    const float width = kPercent * Parameters().Real(kEffectWidth);
    move(m_dry, level * (1.0f - mix));
    move(m_direct, level * mix * 0.5f * (1.0f + width));
    move(m_across, level * mix * 0.5f * (1.0f - width));
}

// The input is copied first: a host may hand over the same buffers for input and output.
void CEffectBase::Render(const float* const* inputs, float* const* outputs, int frames) noexcept {
    float dryLeft[kMaximumTickFrames];
    float dryRight[kMaximumTickFrames];
    for (int i = 0; i < frames; ++i) {
        dryLeft[i] = Checked(inputs[0][i]);
        dryRight[i] = Checked(inputs[1][i]);
        m_inputPeak = std::max(m_inputPeak, std::max(std::fabs(dryLeft[i]), std::fabs(dryRight[i])));
    }
    float left[kMaximumTickFrames];
    float right[kMaximumTickFrames];
    m_memoryPeak = std::max(m_memoryPeak, RenderWet({dryLeft, dryRight}, left, right, frames));

    float dry[kMaximumTickFrames];
    float direct[kMaximumTickFrames];
    float across[kMaximumTickFrames];
    m_dry.Fill(dry, TickOffset(), frames, TickFrames());
    m_direct.Fill(direct, TickOffset(), frames, TickFrames());
    m_across.Fill(across, TickOffset(), frames, TickFrames());
    for (int i = 0; i < frames; ++i) {
        outputs[0][i] = dry[i] * dryLeft[i] + direct[i] * left[i] + across[i] * right[i];
        outputs[1][i] = dry[i] * dryRight[i] + direct[i] * right[i] + across[i] * left[i];
    }
    m_memoryPeak = std::max(m_memoryPeak, Finish(outputs[0], outputs[1], frames));
}

}  // namespace quibplug
