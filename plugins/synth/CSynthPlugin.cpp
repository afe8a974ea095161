// SPDX-License-Identifier: GPL-3.0-or-later
#include "synth/CSynthPlugin.h"

#include <algorithm>
#include <memory>

namespace quibplug {

namespace {

PluginDescription Description() {
    return {
        "QUIB synth",   vst2::FourCharacters('Q', 'b', 'S', 'y'), 1000, vst2::kPlugCategSynth, 0, 2, SynthParameters(),
        SynthPrograms()};
}

constexpr float kControllerSeconds = 0.005f;

enum MidiController : int {
    kModulationWheel = 1,
    kSustainPedal = 64,
    kAllSoundOff = 120,
    kResetControllers = 121,
    kAllNotesOff = 123,
    kLastModeMessage = 127
};

}  // namespace

CSynthPlugin::CSynthPlugin() : CPluginBase(Description()) {
    CWaveTables::Shared();
    SampleRateChanged();
    Reset();
    ParametersSnapped();
}

void CSynthPlugin::SampleRateChanged() noexcept { m_width.Allocate(SampleRate()); }

void CSynthPlugin::Reset() noexcept {
    m_controls.SetRate(SampleRate(), TickFrames());
    m_controllerShare = OnePoleShare(kControllerSeconds, TickRate());
    ResetControllers();
    SnapControllers();
    m_voices.Reset();
    m_width.Clear();
}

void CSynthPlugin::ResetControllers() noexcept { m_bendTarget = m_wheelTarget = m_touchTarget = 0.0f; }

void CSynthPlugin::SnapControllers() noexcept {
    m_controls.bend = m_bendTarget;
    m_controls.wheel = m_wheelTarget;
    m_controls.touch = m_touchTarget;
}

void CSynthPlugin::ParametersSnapped() noexcept {
    m_controls.Update(Parameters());
    m_width.Snap(m_controls.stereoWidth);
}

void CSynthPlugin::Tick(bool changed) noexcept {
    if (changed) m_controls.Update(Parameters());
    m_controls.bend += (m_bendTarget - m_controls.bend) * m_controllerShare;
    m_controls.wheel += (m_wheelTarget - m_controls.wheel) * m_controllerShare;
    m_controls.touch += (m_touchTarget - m_controls.touch) * m_controllerShare;
    m_voices.Tick(m_controls);
    m_width.Tick(m_controls.stereoWidth, TickFrames());
}

void CSynthPlugin::Render(const float* const*, float* const* outputs, int frames) noexcept {
    std::fill_n(outputs[0], frames, 0.0f);
    std::fill_n(outputs[1], frames, 0.0f);
    m_voices.Render(outputs[0], outputs[1], TickOffset(), frames, m_controls);
    m_width.Render(outputs[0], outputs[1], {TickOffset(), frames, TickFrames()});
}

void CSynthPlugin::NoteOn(int key, int velocity) noexcept {
    if (!Sounding()) SnapControllers();
    m_voices.NoteOn(key, velocity, m_controls);
}

void CSynthPlugin::ControlChange(int controller, int value) noexcept {
    switch (controller) {
        case kModulationWheel:
            m_wheelTarget = static_cast<float>(value) / 127.0f;
            break;
        case kSustainPedal:
            m_voices.Pedal(value >= 64);
            break;
        case kAllSoundOff:
            m_voices.FadeAll();
            break;
        case kResetControllers:
            ResetControllers();
            m_voices.Pedal(false);
            break;
        default:
            if (controller >= kAllNotesOff && controller <= kLastModeMessage) m_voices.ReleaseAll();
            break;
    }
}

}  // namespace quibplug

VST2_EXPORT vst2::AEffect* VSTPluginMain(vst2::HostCallback host) {
    if (host == nullptr) return nullptr;
    try {
        auto plugin = std::make_unique<quibplug::CSynthPlugin>();
        return plugin.release()->Effect();
    } catch (...) {
        return nullptr;
    }
}
