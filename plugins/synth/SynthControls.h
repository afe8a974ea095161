// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What all voices of the synthesiser share at a control tick: the parameters in the units the voice
// computes with, and the player's controllers. Belongs to the render thread.

#include "dsp/CEnvelope.h"
#include "dsp/CSmoothedParameters.h"
#include "synth/SynthParameters.h"

namespace quibplug {

struct OscillatorControls {
    int wave = kWaveSaw;
    float semitones = 0.0f;  // octave, semitone and fine together
    float width = 0.5f;      // of a period
    float level = 0.0f;
};

struct SynthControls {
    // What the resonance of 100 % would have for damping without oscillating.
    static constexpr float kHighestResonanceDamping = 0.04419417f;

    float sampleRate = 44100.0f;
    float meanShare = 0.0f;  // per frame, of a follower of the mean
    float tickRate = 2756.25f;
    int tickFrames = 16;

    OscillatorControls oscillators[2];
    int subWave = kSubSquare;
    float subLevel = 0.0f;
    float noiseLevel = 0.0f;
    float fmTurns = 0.0f;  // phase swing of oscillator 1, in periods
    float fmEnvelopeTurns = 0.0f;
    int unisonVoices = 1;
    float unisonDetune = 0.0f;  // semitones of the outermost copies
    float unisonSpread = 0.0f;  // 0..1
    int startPhase = kPhaseFixed;
    int playMode = kModePoly;
    float glideShare = 1.0f;  // per tick

    int filterType = kLowPass24;
    float cutoffOctave = 14.0f;  // log2 of hertz
    float damping = 1.4f;        // of the filter's first stage, 1 / Q; below zero it oscillates
    float saturation = 0.0f;     // damping added per square of the filter's amplitude
    float drive = 0.0f;          // 0..1
    float filterEnvelope = 0.0f;
    float keyTrack = 0.0f;
    float velocityToFilter = 0.0f;

    EnvelopeShape ampShape;
    EnvelopeShape modShape;
    float velocityToLevel = 0.0f;
    float modToPitch = 0.0f;
    float modToWidth = 0.0f;

    int lfo1Wave = kLfoSine;
    int lfo2Wave = kLfoSine;
    float lfo1TurnsPerTick = 0.0f;
    float lfo2TurnsPerTick = 0.0f;
    float lfoShare = 1.0f;
    float lfo1FadePerTick = 1.0f;
    float lfo1ToPitch = 0.0f;  // semitones
    float lfo1ToCutoff = 0.0f;
    float lfo1ToWidth = 0.0f;
    bool lfo2Synced = true;
    float lfo2ToLevel = 0.0f;
    float lfo2ToPan = 0.0f;
    float lfo2ToCutoff = 0.0f;
    float wheelToVibrato = 0.0f;
    float wheelToCutoff = 0.0f;
    float touchToVibrato = 0.0f;
    float touchToCutoff = 0.0f;
    float bendRange = 2.0f;
    float pan = 0.0f;
    float volume = 0.5f;
    float stereoWidth = 0.0f;  // 0..1

    // The player's controllers, smoothed from tick to tick.
    float bend = 0.0f;   // -1..1
    float wheel = 0.0f;  // 0..1
    float touch = 0.0f;  // 0..1

    void SetRate(float hertz, int framesPerTick) noexcept;
    void Update(const CSmoothedParameters& parameters) noexcept;

private:
    void UpdateFilterAndEnvelopes(const CSmoothedParameters& parameters) noexcept;
    void UpdateResonance(float percent) noexcept;
    void UpdateModulation(const CSmoothedParameters& parameters) noexcept;
};

}  // namespace quibplug
