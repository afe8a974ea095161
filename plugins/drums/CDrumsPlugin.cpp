// SPDX-License-Identifier: GPL-3.0-or-later
#include "drums/CDrumsPlugin.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace quibplug {

namespace {

constexpr std::int32_t kUniqueId = 0x31366378;
constexpr float kPercent = 0.01f;
constexpr float kRepeatFadeSeconds = 0.004f;
constexpr float kChokeFadeSeconds = 0.012f;
constexpr float kSendSeconds = 0.005f;
constexpr int kAllSoundOff = 120;
// How much of each drum goes into the room: little of what would boom or hiss there.
constexpr float kRoomShares[kDrumCount] = {0.35f, 1.0f, 1.0f, 0.55f, 0.55f, 0.5f, 0.9f, 0.9f,
                                           0.9f,  0.5f, 0.5f, 1.0f,  0.8f,  0.7f, 0.7f, 1.0f};

PluginDescription Description() {
    return {"QUIB drums", kUniqueId, 1000, vst2::kPlugCategSynth, 0, 2 + 2 * kSendCount, DrumsParameters(), DrumKits()};
}

}  // namespace

CDrumsPlugin::CDrumsPlugin() : CPluginBase(Description()) {
    CWaveTables::Shared();
    SampleRateChanged();
    Reset();
    ParametersSnapped();
}

void CDrumsPlugin::SampleRateChanged() noexcept { m_room.Allocate(SampleRate()); }

void CDrumsPlugin::Reset() noexcept {
    m_room.Clear();
    for (CDrumVoice& voice : m_voices) voice.Kill();
    m_sendShare = OnePoleShare(kSendSeconds, TickRate());
    m_strokes = 0;
    m_sounding = false;
}

void CDrumsPlugin::ParametersSnapped() noexcept {
    UpdateStrips([](Ramp& ramp, float value, float) { ramp.Set(value); });
    m_room.Snap(Parameters().Real(kKitRoomLevel), Parameters().Real(kKitRoomSize));
}

void CDrumsPlugin::Tick(bool) noexcept {
    // A stepped routing arrives by a glide of its own; the others are smoothed already.
    UpdateStrips([](Ramp& ramp, float value, float share) {
        const float distance = value - ramp.end;
        ramp.Aim(std::fabs(distance) < 1e-5f ? value : ramp.end + distance * share);
    });
    m_room.Tick(Parameters().Real(kKitRoomLevel), Parameters().Real(kKitRoomSize), TickFrames());
    for (CDrumVoice& voice : m_voices) {
        if (voice.Active()) voice.Tick();
    }
}

template <typename Move>
void CDrumsPlugin::UpdateStrips(Move move) noexcept {
    const CSmoothedParameters& parameters = Parameters();
    const float volume = parameters.Real(kKitVolume);
    for (int drum = 0; drum < kDrumCount; ++drum) {
        DrumStrip& strip = m_strips[static_cast<std::size_t>(drum)];
        const float gain = volume * parameters.Real(IndexOf(drum, kDrumLevel));
        const float pan = kPercent * parameters.Real(IndexOf(drum, kDrumPan));
        move(strip.left, gain * std::sqrt(1.0f - pan), 1.0f);
        move(strip.right, gain * std::sqrt(1.0f + pan), 1.0f);
        const int routed = parameters.Step(IndexOf(drum, kDrumSend));
        for (int send = 0; send < kSendCount; ++send) {
            move(strip.sends[static_cast<std::size_t>(send)], routed == send + 1 ? 1.0f : 0.0f, m_sendShare);
        }
    }
}

void CDrumsPlugin::Render(const float* const*, float* const* outputs, int frames) noexcept {
    for (int output = 0; output < 2 + 2 * kSendCount; ++output) std::fill_n(outputs[output], frames, 0.0f);
    RoomInput room;
    m_sounding = false;
    for (CDrumVoice& voice : m_voices) {
        if (!voice.Active()) continue;
        AddVoice(voice, outputs, m_room.On() ? &room : nullptr, frames);
        m_sounding = m_sounding || voice.Active();
    }
    if (m_room.On()) m_room.Render(room.left, room.right, outputs[0], outputs[1], {TickOffset(), frames, TickFrames()});
    m_sounding = m_sounding || m_room.Sounding();
}

void CDrumsPlugin::AddVoice(CDrumVoice& voice, float* const* outputs, RoomInput* room, int frames) noexcept {
    const DrumStrip& strip = m_strips[static_cast<std::size_t>(voice.DrumIndex())];
    float left[kMaximumTickFrames];
    float right[kMaximumTickFrames];
    float gains[kMaximumTickFrames];
    voice.Render(left, frames);
    strip.right.Fill(gains, TickOffset(), frames, TickFrames());
    for (int i = 0; i < frames; ++i) right[i] = left[i] * gains[i];
    strip.left.Fill(gains, TickOffset(), frames, TickFrames());
    for (int i = 0; i < frames; ++i) left[i] *= gains[i];
    for (int i = 0; i < frames; ++i) {
        outputs[0][i] += left[i];
        outputs[1][i] += right[i];
    }
    if (room != nullptr) {
        const float share = kRoomShares[voice.DrumIndex()];
        for (int i = 0; i < frames; ++i) {
            room->left[i] += share * left[i];
            room->right[i] += share * right[i];
        }
    }
    for (int send = 0; send < kSendCount; ++send) {
        const Ramp& ramp = strip.sends[static_cast<std::size_t>(send)];
        if (ramp.Zero()) continue;
        ramp.Fill(gains, TickOffset(), frames, TickFrames());
        for (int i = 0; i < frames; ++i) {
            outputs[2 * send + 2][i] += left[i] * gains[i];
            outputs[2 * send + 3][i] += right[i] * gains[i];
        }
    }
}

DrumSetting CDrumsPlugin::SettingOf(const KeySound& sound, int velocity) const noexcept {
    const int drum = sound.drum;
    const CSmoothedParameters& parameters = Parameters();
    const auto share = [&](int parameter) { return kPercent * parameters.Real(IndexOf(drum, parameter)); };
    const float sensitivity = kPercent * parameters.Real(kKitVelocity);
    DrumSetting setting;
    setting.tune = parameters.Real(IndexOf(drum, kDrumTune)) + sound.tune;
    setting.decay = share(kDrumDecay) * sound.decay;
    setting.tone = share(kDrumTone);
    setting.snap = share(kDrumSnap);
    setting.colour = share(kDrumColour);
    setting.drive = kPercent * parameters.Real(kKitDrive);
    setting.crush = kPercent * parameters.Real(kKitCrush);
    const float weakness = 1.0f - static_cast<float>(velocity) / 127.0f;
    setting.velocity = 1.0f - sensitivity * weakness;
    setting.softness = kPercent * parameters.Real(kKitTouch) * weakness;
    return setting;
}

void CDrumsPlugin::NoteOn(int key, int velocity) noexcept {
    const KeySound sound = SoundOfKey(key);
    if (sound.drum < 0) return;
    FadeStroke(sound.stroke, kRepeatFadeSeconds);
    if (sound.drum == kClosedHat || sound.drum == kPedalHat) FadeStroke(kOpenHat, kChokeFadeSeconds);
    FreeVoice().Start(sound.drum, sound.stroke, SettingOf(sound, velocity), ++m_strokes, SampleRate());
    m_sounding = true;
}

void CDrumsPlugin::FadeStroke(int stroke, float seconds) noexcept {
    for (CDrumVoice& voice : m_voices) {
        if (voice.Active() && voice.Stroke() == stroke) voice.Fade(seconds);
    }
}

// A voice that is free, or the one that has been fading for longest: of each stroke only one is not.
CDrumVoice& CDrumsPlugin::FreeVoice() noexcept {
    CDrumVoice* best = &m_voices[0];
    for (CDrumVoice& voice : m_voices) {
        if (!voice.Active()) return voice;
        if (voice.Fading() && (!best->Fading() || voice.Order() < best->Order())) best = &voice;
    }
    return *best;
}

const char* CDrumsPlugin::OutputPairName(int pair) const noexcept {
    static constexpr const char* kNames[] = {"Main", "Send 1", "Send 2", "Send 3", "Send 4"};
    return kNames[pair];
}

void CDrumsPlugin::ControlChange(int controller, int) noexcept {
    if (controller != kAllSoundOff) return;
    for (CDrumVoice& voice : m_voices) {
        if (voice.Active()) voice.Fade(kRepeatFadeSeconds);
    }
}

}  // namespace quibplug

VST2_EXPORT vst2::AEffect* VSTPluginMain(vst2::HostCallback host) {
    if (host == nullptr) return nullptr;
    try {
        auto plugin = std::make_unique<quibplug::CDrumsPlugin>();
        return plugin.release()->Effect();
    } catch (...) {
        return nullptr;
    }
}
