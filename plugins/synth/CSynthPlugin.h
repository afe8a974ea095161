// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// "QUIB synth": polyphonic subtractive synthesiser, stereo. See CPluginBase for its threads.

#include "dsp/CPluginBase.h"
#include "synth/CStereoWidth.h"
#include "synth/CVoicePool.h"

namespace quibplug {

class CSynthPlugin final : public CPluginBase {
public:
    CSynthPlugin();

private:
    void SampleRateChanged() noexcept override;
    void Reset() noexcept override;
    bool Sounding() const noexcept override { return m_voices.Sounding() || m_width.Sounding(); }
    void Tick(bool changed) noexcept override;
    void ParametersSnapped() noexcept override;
    void Render(const float* const* inputs, float* const* outputs, int frames) noexcept override;
    void NoteOn(int key, int velocity) noexcept override;
    void NoteOff(int key) noexcept override { m_voices.NoteOff(key, m_controls); }
    void ControlChange(int controller, int value) noexcept override;
    void PitchBend(float position) noexcept override { m_bendTarget = position; }
    void Aftertouch(float pressure) noexcept override { m_touchTarget = pressure; }
    void ResetControllers() noexcept;
    void SnapControllers() noexcept;

    SynthControls m_controls;
    CVoicePool m_voices;
    CStereoWidth m_width;
    float m_controllerShare = 1.0f;
    float m_bendTarget = 0.0f;
    float m_wheelTarget = 0.0f;
    float m_touchTarget = 0.0f;
};

}  // namespace quibplug
