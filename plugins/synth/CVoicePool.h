// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The voices of the synthesiser: which one a key gets, which one is taken when all are busy, what
// the pedal holds, and the keys of the mono modes. Belongs to the render thread.

#include <array>

#include "synth/CSynthVoice.h"

namespace quibplug {

class CVoicePool {
public:
    static constexpr int kPolyphony = 32;

    void Reset() noexcept;
    void NoteOn(int key, int velocity, const SynthControls& controls) noexcept;
    void NoteOff(int key, const SynthControls& controls) noexcept;
    void Pedal(bool down) noexcept;
    // As if every key were let go, the pedal still counting.
    void ReleaseAll() noexcept;
    // Silence within a few milliseconds.
    void FadeAll() noexcept;

    bool Sounding() const noexcept { return m_sounding; }
    void Tick(const SynthControls& controls) noexcept;
    // Adds all voices.
    void Render(float* left, float* right, int offset, int frames, const SynthControls& controls) noexcept;

private:
    // As many again may be fading out.
    static constexpr int kSlots = 2 * kPolyphony;

    void StartVoice(int key, int velocity, const SynthControls& controls) noexcept;
    void StartMono(int key, int velocity, const SynthControls& controls) noexcept;
    void EndNote(CSynthVoice& voice) noexcept;
    CSynthVoice* MonoVoice() noexcept;
    CSynthVoice& FreeSlot() noexcept;
    void MakeRoom() noexcept;
    void PushKey(int key) noexcept;
    void RemoveKey(int key) noexcept;

    std::array<CSynthVoice, kSlots> m_voices;
    std::array<int, 128> m_keys{};  // held ones, in the order of their playing
    int m_keyCount = 0;
    bool m_pedal = false;
    bool m_sounding = false;
    std::uint32_t m_noteCount = 0;
    float m_lastPitch = -1.0f;  // where a glide begins; negative before the first note
};

}  // namespace quibplug
