// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// "QUIB drums": sixteen synthesised drums on General MIDI keys, in a room. Outputs 0 and 1 are the main pair;
// send k (0..3) has outputs 2k + 2 and 2k + 3 for the drums that are routed there besides. See
// CPluginBase for its threads.

#include <array>

#include "drums/CDrumRoom.h"
#include "drums/CDrumVoice.h"
#include "drums/DrumParameters.h"
#include "dsp/CPluginBase.h"
#include "dsp/Ramp.h"

namespace quibplug {

class CDrumsPlugin final : public CPluginBase {
public:
    CDrumsPlugin();

private:
    static constexpr int kVoices = 48;

    // Gains of a drum, gliding from tick to tick.
    struct DrumStrip {
        Ramp left;
        Ramp right;
        std::array<Ramp, kSendCount> sends;
    };

    // What the drums send into the room, in their places.
    struct RoomInput {
        float left[kMaximumTickFrames] = {};
        float right[kMaximumTickFrames] = {};
    };

    void SampleRateChanged() noexcept override;
    void Reset() noexcept override;
    bool Sounding() const noexcept override { return m_sounding; }
    void Tick(bool changed) noexcept override;
    void ParametersSnapped() noexcept override;
    void Render(const float* const* inputs, float* const* outputs, int frames) noexcept override;
    void NoteOn(int key, int velocity) noexcept override;
    void ControlChange(int controller, int value) noexcept override;
    const char* OutputPairName(int pair) const noexcept override;
    const char* KeyName(int key) const noexcept override { return SoundOfKey(key).name; }

    DrumSetting SettingOf(const KeySound& sound, int velocity) const noexcept;
    template <typename Move>
    void UpdateStrips(Move move) noexcept;
    void FadeStroke(int stroke, float seconds) noexcept;
    CDrumVoice& FreeVoice() noexcept;
    void AddVoice(CDrumVoice& voice, float* const* outputs, RoomInput* room, int frames) noexcept;

    std::array<CDrumVoice, kVoices> m_voices;
    std::array<DrumStrip, kDrumCount> m_strips;
    CDrumRoom m_room;
    float m_sendShare = 1.0f;
    std::uint32_t m_strokes = 0;
    bool m_sounding = false;
};

}  // namespace quibplug
