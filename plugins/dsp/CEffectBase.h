// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the built-in stereo effects share over CPluginBase: a checked input, the mix of dry and wet
// sound, the wet sound's width, the level, and sleep. An effect sleeps when its input is silent and
// nothing above -120 dBFS went into its memory for as long as that reaches back; the first sample
// that is heard wakes it. Both happen at counted samples, whatever the blocks. Render thread.

#include "dsp/CPluginBase.h"
#include "dsp/Ramp.h"

namespace quibplug {

// The first parameters of every effect.
enum EffectParameter : int { kEffectMix, kEffectLevel, kEffectWidth, kFirstOwnParameter };

constexpr ParameterSpec kMixSpec{"Mix", "%", Curve::kLinear, 0, 100, 100};
constexpr ParameterSpec kLevelSpec{"Level", "dB", Curve::kGain, 0, 2, 1};
constexpr ParameterSpec kWidthSpec{"Width", "%", Curve::kLinear, 0, 200, 100};

struct StereoInput {
    const float* left;
    const float* right;
};

class CEffectBase : public CPluginBase {
public:
    using CPluginBase::CPluginBase;

protected:
    // Forgets everything that is still to be heard.
    virtual void Clear() noexcept = 0;
    // Once per tick; `changed` tells that parameters moved.
    virtual void TickEffect(bool changed) noexcept = 0;
    // Everything to its target: nothing sounds that could jump.
    virtual void SnapEffect() noexcept = 0;
    // Writes the wet sound. Answers the largest magnitude that went into the effect's memory.
    virtual float RenderWet(StereoInput input, float* left, float* right, int frames) noexcept = 0;
    // The last thing done to the output, after the mix and the level. Answers as RenderWet does.
    virtual float Finish(float* left, float* right, int frames) noexcept;
    // How long a sample may stay in the memory unheard.
    virtual int MemoryFrames() const noexcept = 0;

private:
    void Reset() noexcept final;
    bool Sounding() const noexcept final { return m_awake; }
    void Tick(bool changed) noexcept final;
    void ParametersSnapped() noexcept final;
    void Render(const float* const* inputs, float* const* outputs, int frames) noexcept final;
    int FramesToSleep(const float* const* inputs, int frames) const noexcept final;
    void WakeUp() noexcept final;

    template <typename Move>
    void UpdateGains(Move move) noexcept;

    Ramp m_dry;
    Ramp m_direct;              // wet sound to its own side
    Ramp m_across;              // wet sound to the other side
    float m_inputPeak = 0.0f;   // of the present tick
    float m_memoryPeak = 0.0f;  // of the present tick
    int m_quietFrames = 0;
    bool m_awake = false;
};

}  // namespace quibplug
