// SPDX-License-Identifier: GPL-3.0-or-later
#include "synth/SynthParameters.h"

#include <array>

namespace quibplug {

namespace {

constexpr const char* kWaveNames[] = {"Saw", "Pulse", "Triangle", "Sine"};
constexpr const char* kSubNames[] = {"Square", "Sine"};
constexpr const char* kPhaseNames[] = {"Fixed", "Random"};
constexpr const char* kModeNames[] = {"Poly", "Mono", "Legato"};
constexpr const char* kFilterNames[] = {"LP 24", "LP 12", "BP 12", "HP 12"};
constexpr const char* kLfoNames[] = {"Sine", "Triangle", "Saw", "Square", "Random"};
constexpr const char* kSyncNames[] = {"Free", "Note"};

constexpr auto kLinear = Curve::kLinear;
constexpr auto kExponential = Curve::kExponential;
constexpr auto kGain = Curve::kGain;
constexpr auto kStepped = Curve::kStepped;

constexpr std::array<ParameterSpec, kSynthParameterCount> kParameters = {{
    {"Osc 1 Wave", "", kStepped, 0, 3, kWaveSaw, kWaveNames},
    {"Osc 1 Octave", "oct", kStepped, -3, 3, 0},
    {"Osc 1 Semitone", "st", kStepped, -12, 12, 0},
    {"Osc 1 Fine", "ct", kLinear, -50, 50, 0},
    {"Osc 1 Width", "%", kLinear, 3, 97, 50},
    {"Osc 1 Level", "dB", kGain, 0, 1, 1},
    {"Osc 2 Wave", "", kStepped, 0, 3, kWaveSaw, kWaveNames},
    {"Osc 2 Octave", "oct", kStepped, -3, 3, 0},
    {"Osc 2 Semitone", "st", kStepped, -12, 12, 0},
    {"Osc 2 Fine", "ct", kLinear, -50, 50, 0},
    {"Osc 2 Width", "%", kLinear, 3, 97, 50},
    {"Osc 2 Level", "dB", kGain, 0, 1, 0},
    {"Sub Wave", "", kStepped, 0, 1, kSubSquare, kSubNames},
    {"Sub Level", "dB", kGain, 0, 1, 0},
    {"Noise Level", "dB", kGain, 0, 1, 0},
    {"Osc 2 > FM", "%", kLinear, 0, 100, 0},
    {"Mod Env > FM", "%", kLinear, 0, 100, 0},
    {"Unison Voices", "", kStepped, 1, 7, 1},
    {"Unison Detune", "ct", kLinear, 0, 100, 15},
    {"Unison Spread", "%", kLinear, 0, 100, 60},
    {"Start Phase", "", kStepped, 0, 1, kPhaseFixed, kPhaseNames},
    {"Play Mode", "", kStepped, 0, 2, kModePoly, kModeNames},
    {"Glide Time", "ms", kExponential, 1, 2000, 1},
    {"Filter Type", "", kStepped, 0, 3, kLowPass24, kFilterNames},
    {"Cutoff", "Hz", kExponential, 20, 20000, 20000},
    {"Resonance", "%", kLinear, 0, 100, 0},
    {"Drive", "%", kLinear, 0, 100, 0},
    {"Mod Env > Cutoff", "st", kLinear, -96, 96, 0},
    {"Key > Cutoff", "%", kLinear, 0, 100, 0},
    {"Velocity > Cutoff", "st", kLinear, 0, 60, 0},
    {"Amp Attack", "ms", kExponential, 0.5f, 5000, 1},
    {"Amp Decay", "ms", kExponential, 5, 20000, 500},
    {"Amp Sustain", "dB", kGain, 0, 1, 1},
    {"Amp Release", "ms", kExponential, 5, 20000, 60},
    {"Velocity > Level", "%", kLinear, 0, 100, 60},
    {"Mod Attack", "ms", kExponential, 0.5f, 5000, 1},
    {"Mod Decay", "ms", kExponential, 5, 20000, 500},
    {"Mod Sustain", "%", kLinear, 0, 100, 0},
    {"Mod Release", "ms", kExponential, 5, 20000, 200},
    {"Mod Env > Pitch", "st", kLinear, -24, 24, 0},
    {"Mod Env > Width", "%", kLinear, -50, 50, 0},
    {"LFO 1 Wave", "", kStepped, 0, 4, kLfoSine, kLfoNames},
    {"LFO 1 Rate", "Hz", kExponential, 0.05f, 30, 5.5f},
    {"LFO 1 Fade", "ms", kExponential, 1, 5000, 1},
    {"LFO 1 > Pitch", "ct", kLinear, 0, 200, 0},
    {"LFO 1 > Cutoff", "st", kLinear, 0, 48, 0},
    {"LFO 1 > Width", "%", kLinear, 0, 45, 0},
    {"LFO 2 Wave", "", kStepped, 0, 4, kLfoTriangle, kLfoNames},
    {"LFO 2 Rate", "Hz", kExponential, 0.05f, 30, 1},
    {"LFO 2 Sync", "", kStepped, 0, 1, 1, kSyncNames},
    {"LFO 2 > Level", "%", kLinear, 0, 100, 0},
    {"LFO 2 > Pan", "%", kLinear, 0, 100, 0},
    {"LFO 2 > Cutoff", "st", kLinear, 0, 48, 0},
    {"Wheel > Vibrato", "ct", kLinear, 0, 100, 40},
    {"Wheel > Cutoff", "st", kLinear, 0, 48, 0},
    {"Touch > Vibrato", "ct", kLinear, 0, 100, 0},
    {"Touch > Cutoff", "st", kLinear, 0, 48, 12},
    {"Bend Range", "st", kStepped, 0, 24, 2},
    {"Pan", "%", kLinear, -100, 100, 0},
    {"Volume", "dB", kGain, 0, 2, 0.5f},
    {"Stereo Width", "%", kLinear, 0, 100, 0},
}};

}  // namespace

std::span<const ParameterSpec> SynthParameters() { return kParameters; }

}  // namespace quibplug
