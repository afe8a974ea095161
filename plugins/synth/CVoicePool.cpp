// SPDX-License-Identifier: GPL-3.0-or-later
#include "synth/CVoicePool.h"

#include <algorithm>

namespace quibplug {

void CVoicePool::Reset() noexcept {
    for (CSynthVoice& voice : m_voices) voice.Kill();
    m_keyCount = 0;
    m_pedal = m_sounding = false;
    m_noteCount = 0;
    m_lastPitch = -1.0f;
}

void CVoicePool::NoteOn(int key, int velocity, const SynthControls& controls) noexcept {
    PushKey(key);
    if (controls.playMode == kModePoly) {
        // The same key again: its earlier note rings out under the new one.
        for (CSynthVoice& voice : m_voices) {
            if (voice.Active() && voice.Key() == key) voice.Release();
        }
        StartVoice(key, velocity, controls);
    } else {
        StartMono(key, velocity, controls);
    }
}

void CVoicePool::NoteOff(int key, const SynthControls& controls) noexcept {
    RemoveKey(key);
    if (controls.playMode != kModePoly && m_keyCount > 0) {
        CSynthVoice* voice = MonoVoice();
        if (voice != nullptr && voice->Key() == key) {
            voice->Retune(m_keys[static_cast<std::size_t>(m_keyCount - 1)], 100, false);
            return;
        }
    }
    for (CSynthVoice& voice : m_voices) {
        if (voice.Active() && voice.Key() == key) EndNote(voice);
    }
}

void CVoicePool::EndNote(CSynthVoice& voice) noexcept {
    if (m_pedal && !voice.Releasing()) {
        voice.pedalHeld = true;
    } else {
        voice.Release();
    }
}

void CVoicePool::Pedal(bool down) noexcept {
    m_pedal = down;
    if (down) return;
    for (CSynthVoice& voice : m_voices) {
        if (voice.Active() && voice.pedalHeld) voice.Release();
    }
}

void CVoicePool::ReleaseAll() noexcept {
    m_keyCount = 0;
    for (CSynthVoice& voice : m_voices) {
        if (voice.Active()) EndNote(voice);
    }
}

void CVoicePool::FadeAll() noexcept {
    m_keyCount = 0;
    for (CSynthVoice& voice : m_voices) {
        if (voice.Active()) voice.Fade();
    }
}

void CVoicePool::StartVoice(int key, int velocity, const SynthControls& controls) noexcept {
    MakeRoom();
    const float from = m_lastPitch < 0.0f ? static_cast<float>(key) : m_lastPitch;
    FreeSlot().Start(key, velocity, from, ++m_noteCount, controls);
    m_lastPitch = static_cast<float>(key);
    m_sounding = true;
}

void CVoicePool::StartMono(int key, int velocity, const SynthControls& controls) noexcept {
    CSynthVoice* voice = MonoVoice();
    if (voice == nullptr) {
        StartVoice(key, velocity, controls);
        return;
    }
    for (CSynthVoice& other : m_voices) {
        if (&other != voice && other.Active()) other.Fade();
    }
    voice->Retune(key, velocity, controls.playMode == kModeMono);
    m_lastPitch = static_cast<float>(key);
}

// The latest note, unless it is fading.
CSynthVoice* CVoicePool::MonoVoice() noexcept {
    CSynthVoice* latest = nullptr;
    for (CSynthVoice& voice : m_voices) {
        if (!voice.Active() || voice.Fading()) continue;
        if (latest == nullptr || voice.Order() > latest->Order()) latest = &voice;
    }
    return latest;
}

// Beyond the polyphony the quietest released note goes, else the oldest.
void CVoicePool::MakeRoom() noexcept {
    int playing = 0;
    CSynthVoice* quietest = nullptr;
    CSynthVoice* oldest = nullptr;
    for (CSynthVoice& voice : m_voices) {
        if (!voice.Active() || voice.Fading()) continue;
        ++playing;
        if (voice.Releasing() && (quietest == nullptr || voice.Level() < quietest->Level())) quietest = &voice;
        if (oldest == nullptr || voice.Order() < oldest->Order()) oldest = &voice;
    }
    if (playing < kPolyphony) return;
    (quietest != nullptr ? quietest : oldest)->Fade();
}

// A slot that is free, or the one that has been fading for longest.
CSynthVoice& CVoicePool::FreeSlot() noexcept {
    CSynthVoice* best = &m_voices[0];
    for (CSynthVoice& voice : m_voices) {
        if (!voice.Active()) return voice;
        if (voice.Fading() && (!best->Fading() || voice.Order() < best->Order())) best = &voice;
    }
    return *best;
}

void CVoicePool::PushKey(int key) noexcept {
    RemoveKey(key);
    m_keys[static_cast<std::size_t>(m_keyCount++)] = key;
}

void CVoicePool::RemoveKey(int key) noexcept {
    const auto end = m_keys.begin() + m_keyCount;
    m_keyCount = static_cast<int>(std::remove(m_keys.begin(), end, key) - m_keys.begin());
}

void CVoicePool::Tick(const SynthControls& controls) noexcept {
    for (CSynthVoice& voice : m_voices) {
        if (voice.Active()) voice.Tick(controls);
    }
}

void CVoicePool::Render(float* left, float* right, int offset, int frames, const SynthControls& controls) noexcept {
    m_sounding = false;
    for (CSynthVoice& voice : m_voices) {
        if (!voice.Active()) continue;
        voice.Render(left, right, offset, frames, controls);
        m_sounding = m_sounding || voice.Active();
    }
}

}  // namespace quibplug
