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

    // The levels of the next `frames` samples, 0..1.
    void Fill(const EnvelopeShape& shape, float* levels, int frames) noexcept {
        for (int i = 0; i < frames;) {
            switch (m_stage) {
                case Stage::kIdle:
                    levels[i++] = 0.0f;
                    break;
                case Stage::kAttack:
                    i = Attack(shape, levels, i, frames);
                    break;
                case Stage::kDecay:
                    i = Fall(shape.sustain, shape.decay, levels, i, frames);
                    break;
                case Stage::kRelease:
                    i = Fall(0.0f, shape.release, levels, i, frames);
                    break;
            }
        }
    }

private:
    enum class Stage { kIdle, kAttack, kDecay, kRelease };
    static constexpr float kSilence = 1e-5f;

    // Both write from index `i` on and return the index after their last sample.
    int Attack(const EnvelopeShape& shape, float* levels, int i, int frames) noexcept {
        while (i < frames && m_stage == Stage::kAttack) {
            m_level += (EnvelopeShape::kOvershoot - m_level) * shape.attack;
            if (m_level >= 1.0f) {
                m_level = 1.0f;
                m_stage = Stage::kDecay;
            }
            levels[i++] = m_level;
        }
        return i;
    }
    int Fall(float target, float share, float* levels, int i, int frames) noexcept {
        const float step = (target - m_level) * share;
        if (m_level + step == m_level && m_level >= kSilence) {  // as near as it gets
            while (i < frames) levels[i++] = m_level;
            return i;
        }
        while (i < frames && m_stage != Stage::kIdle) {
            m_level += (target - m_level) * share;
            levels[i++] = m_level;
            if (m_level < kSilence && target < kSilence) Reset();
        }
        return i;
    }

    Stage m_stage = Stage::kIdle;
    float m_level = 0.0f;
};

}  // namespace quibplug
