// SPDX-License-Identifier: GPL-3.0-or-later
#include "synth/CSynthVoice.h"

#include <algorithm>
#include <cmath>

namespace quibplug {

namespace {

constexpr float kVoiceGain = 0.5f;  // headroom for chords at a volume of 0 dB
constexpr float kFadeSeconds = 0.004f;
constexpr float kSelectionSeconds = 0.004f;
constexpr float kLowestOctave = 4.0f;           // 16 Hz
constexpr float kHighestOctave = 14.28771238f;  // 20 kHz
constexpr float kHighestCutoffOfRate = 0.45f;
constexpr float kNoiseBandHertz = 18000.0f;
constexpr float kNoiseReferenceRate = 44100.0f;
constexpr float kMiddleKey = 60.0f;

float FrequencyOf(float pitch) noexcept { return 440.0f * Exp2((pitch - 69.0f) * (1.0f / 12.0f)); }

}  // namespace

CSynthVoice::Selection CSynthVoice::SelectionOf(const SynthControls& controls) noexcept {
    return {{controls.oscillators[0].wave, controls.oscillators[1].wave}, controls.subWave, controls.filterType};
}

void CSynthVoice::Start(int key, int velocity, float fromPitch, std::uint32_t seed,
                        const SynthControls& controls) noexcept {
    *this = CSynthVoice();
    m_active = true;
    m_key = key;
    m_velocity = static_cast<float>(velocity) / 127.0f;
    m_order = seed;
    m_targetPitch = static_cast<float>(key);
    m_pitch = controls.glideShare < 1.0f ? fromPitch : m_targetPitch;
    m_copies = std::clamp(controls.unisonVoices, 1, kMostCopies);
    m_selection = SelectionOf(controls);
    m_fadeLength = std::max(1, static_cast<int>(kFadeSeconds * controls.sampleRate));
    m_random.Seed(seed);
    if (controls.startPhase == kPhaseRandom) {
        for (auto& row : m_phases) {
            for (std::uint32_t& phase : row) phase = m_random.Next();
        }
    } else {
        // Copies that start as one add up to a thump: spread them, the first stays at zero.
        for (auto& row : m_phases) {
            for (int copy = 1; copy < m_copies; ++copy) row[copy] = static_cast<std::uint32_t>(copy) * 0x9e3779b9u;
        }
    }
    m_lfo1.Start(0, seed, controls.lfo1Wave);
    m_lfo2.Start(controls.lfo2Synced ? 0 : m_random.Next(), seed + 1, controls.lfo2Wave);
    m_lfo1Fade = controls.lfo1FadePerTick >= 1.0f ? 1.0f : 0.0f;
    m_noiseCoefficients = FilterCoefficients::FromFrequency(kNoiseBandHertz, 1.41421356f, controls.sampleRate);
    m_noiseGain = std::sqrt(controls.sampleRate / kNoiseReferenceRate);
    m_ampEnvelope.Trigger();
    m_modEnvelope.Trigger();
    UpdateTargets(controls, [](Ramp& ramp, float value) { ramp.Set(value); });
    StartOscillation();
}

void CSynthVoice::Retune(int key, int velocity, bool retrigger) noexcept {
    m_key = key;
    m_targetPitch = static_cast<float>(key);
    pedalHeld = false;
    if (!retrigger && !Releasing()) return;
    m_velocity = static_cast<float>(velocity) / 127.0f;
    m_ampEnvelope.Trigger();
    m_modEnvelope.Trigger();
}

void CSynthVoice::Release() noexcept {
    pedalHeld = false;
    m_ampEnvelope.Release();
    m_modEnvelope.Release();
}

void CSynthVoice::Fade() noexcept {
    if (m_fadeFrames == 0) m_fadeFrames = m_fadeLength;
}

void CSynthVoice::Tick(const SynthControls& controls) noexcept {
    m_pitch += (m_targetPitch - m_pitch) * controls.glideShare;
    m_lfo1.Tick(controls.lfo1Wave, controls.lfo1TurnsPerTick, controls.lfoShare);
    m_lfo2.Tick(controls.lfo2Wave, controls.lfo2TurnsPerTick, controls.lfoShare);
    m_lfo1Fade = std::min(1.0f, m_lfo1Fade + controls.lfo1FadePerTick);
    UpdateSelection(controls);
    UpdateTargets(controls, [](Ramp& ramp, float value) { ramp.Aim(value); });
    WakeOscillation();
}

// Waves and filter types cannot glide: the voice dips to silence, changes them and comes back.
void CSynthVoice::UpdateSelection(const SynthControls& controls) noexcept {
    const float step = 1.0f / std::max(1.0f, kSelectionSeconds * controls.tickRate);
    if (m_selection == SelectionOf(controls)) {
        m_selectionGain = std::min(1.0f, m_selectionGain + step);
    } else if (m_selectionGain > 0.0f) {
        m_selectionGain = std::max(0.0f, m_selectionGain - step);
    } else {
        m_selection = SelectionOf(controls);
    }
}

template <typename Move>
void CSynthVoice::UpdateTargets(const SynthControls& controls, Move move) noexcept {
    const float lfo1 = m_lfo1.Value();
    const float lfo2 = m_lfo2.Value();
    const float envelope = m_modEnvelope.Level();
    const float vibrato = m_lfo1Fade * controls.lfo1ToPitch + controls.wheel * controls.wheelToVibrato +
                          controls.touch * controls.touchToVibrato;
    UpdatePitches(controls, controls.bend * controls.bendRange + lfo1 * vibrato + envelope * controls.modToPitch);

    const float width = m_lfo1Fade * lfo1 * controls.lfo1ToWidth + envelope * controls.modToWidth;
    for (int i = 0; i < 2; ++i) {
        move(m_levels[i], controls.oscillators[i].level);
        move(m_widths[i], std::clamp(controls.oscillators[i].width + width, 0.02f, 0.98f));
    }
    move(m_subLevel, controls.subLevel);
    move(m_noiseLevel, controls.noiseLevel);
    move(m_fmTurns, controls.fmTurns + envelope * controls.fmEnvelopeTurns);
    move(m_drive, controls.drive);
    move(m_tangent, CutoffTangent(controls));
    move(m_damping, controls.damping);
    move(m_saturation, controls.saturation);

    const float velocity = 1.0f - controls.velocityToLevel * (1.0f - m_velocity * m_velocity);
    const float tremolo = 1.0f - controls.lfo2ToLevel * 0.5f * (1.0f - lfo2);
    const float gain = kVoiceGain * controls.volume * velocity * tremolo * m_selectionGain;
    const float pan = std::clamp(controls.pan + lfo2 * controls.lfo2ToPan, -1.0f, 1.0f);
    move(m_gainLeft, gain * std::sqrt(1.0f - pan));
    move(m_gainRight, gain * std::sqrt(1.0f + pan));
}

void CSynthVoice::UpdatePitches(const SynthControls& controls, float semitones) noexcept {
    UpdateCopies(controls);
    for (int i = 0; i < 2; ++i) {
        const float hertz = FrequencyOf(m_pitch + semitones + controls.oscillators[i].semitones);
        for (int copy = 0; copy < m_copies; ++copy) {
            m_increments[i][copy] = CWaveTables::Increment(hertz * m_ratios[copy], controls.sampleRate);
        }
    }
    const float sub = FrequencyOf(m_pitch + semitones + controls.oscillators[0].semitones - 12.0f);
    m_subIncrement = CWaveTables::Increment(sub, controls.sampleRate);
}

// Copies stand evenly across the detuning; neighbours in pitch go to opposite sides.
void CSynthVoice::UpdateCopies(const SynthControls& controls) noexcept {
    if (m_copies == 1 || (m_copyDetune == controls.unisonDetune && m_copySpread == controls.unisonSpread)) return;
    m_copyDetune = controls.unisonDetune;
    m_copySpread = controls.unisonSpread;
    const float share = 1.0f / std::sqrt(static_cast<float>(m_copies));
    for (int copy = 0; copy < m_copies; ++copy) {
        const float place = 2.0f * static_cast<float>(copy) / static_cast<float>(m_copies - 1) - 1.0f;
        const float side = (copy % 2 == 0 ? place : -place) * m_copySpread;
        m_ratios[copy] = Exp2(place * m_copyDetune * (1.0f / 12.0f));
        m_copyLeft[copy] = share * std::sqrt(1.0f - side);
        m_copyRight[copy] = share * std::sqrt(1.0f + side);
    }
}

// A note of an oscillating filter begins at the amplitude where it will stay.
void CSynthVoice::StartOscillation() noexcept {
    if (m_damping.end >= 0.0f) return;
    const float amplitude = std::sqrt(-m_damping.end / m_saturation.end);
    for (auto& stages : m_filters) stages[0].StartSine(amplitude, m_tangent.end);
}

// A silent filter that has been turned into the oscillation needs something to grow from.
void CSynthVoice::WakeOscillation() noexcept {
    constexpr float kSeed = 0.01f;
    if (m_damping.end >= 0.0f) return;
    for (auto& stages : m_filters) {
        if (stages[0].StateEnergy() < 0.1f * kSeed * kSeed) stages[0].StartSine(kSeed, m_tangent.start);
    }
}

float CSynthVoice::CutoffTangent(const SynthControls& controls) const noexcept {
    const float semitones =
        m_modEnvelope.Level() * controls.filterEnvelope + controls.keyTrack * (m_pitch - kMiddleKey) +
        (m_velocity - 1.0f) * controls.velocityToFilter + m_lfo1Fade * m_lfo1.Value() * controls.lfo1ToCutoff +
        m_lfo2.Value() * controls.lfo2ToCutoff + controls.wheel * controls.wheelToCutoff +
        controls.touch * controls.touchToCutoff;
    const float octave = std::clamp(controls.cutoffOctave + semitones * (1.0f / 12.0f), kLowestOctave, kHighestOctave);
    return Tangent(kPi * std::min(Exp2(octave) / controls.sampleRate, kHighestCutoffOfRate));
}

}  // namespace quibplug
