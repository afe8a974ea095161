// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Attack, decay, sustain, release with exponential segments, stepped per sample so that its course
// does not depend on block sizes. Belongs to one voice on the render thread. A trigger goes on from
// the present level, so that a repeated note does not click.

#include "dsp/FastMath.h"

namespace quibplug {

// Shares of the way per sample; see OnePoleShare. Decay and release times are those of a fall by
// 60 dB.
struct EnvelopeShape {
    float attack = 1.0f;
    float decay = 1.0f;
    float sustain = 1.0f;
    float release = 1.0f;

    static EnvelopeShape FromTimes(float attackMs, float decayMs, float sustain, float releaseMs,
                                   float sampleRate) noexcept {
        constexpr float kAttackConstants = 1.6094379f;  // ln(kOvershoot / (kOvershoot - 1))
        constexpr float kFallConstants = 6.9077553f;    // ln(1000)
        const float perMillisecond = 0.001f;
        return {OnePoleShare(attackMs * perMillisecond / kAttackConstants, sampleRate),
                OnePoleShare(decayMs * perMillisecond / kFallConstants, sampleRate), sustain,
                OnePoleShare(releaseMs * perMillisecond / kFallConstants, sampleRate)};
    }
    static constexpr float kOvershoot = 1.25f;  // where the attack aims, cut off at 1
};

class CEnvelope {
public:
    void Reset() noexcept {
        m_stage = Stage::kIdle;
        m_level = 0.0f;
    }
    void Trigger() noexcept { m_stage = Stage::kAttack; }
    void Release() noexcept {
        if (m_stage != Stage::kIdle) m_stage = Stage::kRelease;
    }
    bool Idle() const noexcept { return m_stage == Stage::kIdle; }
    bool Releasing() const noexcept { return m_stage == Stage::kRelease; }
    float Level() const noexcept { return m_level; }

    // One sample further; returns the new level, 0..1.
    float Next(const EnvelopeShape& shape) noexcept {
        switch (m_stage) {
            case Stage::kIdle:
                return 0.0f;
            case Stage::kAttack:
                m_level += (EnvelopeShape::kOvershoot - m_level) * shape.attack;
                if (m_level >= 1.0f) {
                    m_level = 1.0f;
                    m_stage = Stage::kDecay;
                }
                return m_level;
            case Stage::kDecay:
                m_level += (shape.sustain - m_level) * shape.decay;
                break;
            case Stage::kRelease:
                m_level -= m_level * shape.release;
                break;
        }
        if (m_level < kSilence && (m_stage == Stage::kRelease || shape.sustain < kSilence)) Reset();
        return m_level;
    }

private:
    enum class Stage { kIdle, kAttack, kDecay, kRelease };
    static constexpr float kSilence = 1e-5f;

    Stage m_stage = Stage::kIdle;
    float m_level = 0.0f;
};

}  // namespace quibplug
