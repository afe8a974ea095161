// SPDX-License-Identifier: GPL-3.0-or-later
#include "synth/SynthControls.h"

namespace quibplug {

namespace {

constexpr float kPercent = 0.01f;
constexpr float kCent = 0.01f;
constexpr float kMillisecond = 0.001f;
constexpr float kHighestFmTurns = 1.0f;
constexpr float kGlideConstants = 3.0f;  // the glide time covers 95 % of the way

OscillatorControls OscillatorFrom(const CSmoothedParameters& parameters, int first) noexcept {
    const auto at = [&](int parameter) { return parameters.Real(first + parameter); };
    return {static_cast<int>(at(kOsc1Wave)), 12.0f * at(kOsc1Octave) + at(kOsc1Semitone) + kCent * at(kOsc1Fine),
            kPercent * at(kOsc1Width), at(kOsc1Level)};
}

}  // namespace

void SynthControls::SetRate(float hertz, int framesPerTick) noexcept {
    constexpr float kMeanSeconds = 0.04f;
    sampleRate = hertz;
    meanShare = OnePoleShare(kMeanSeconds, hertz);
    tickFrames = framesPerTick;
    tickRate = hertz / static_cast<float>(framesPerTick);
    lfoShare = OnePoleShare(2.0f * kMillisecond, tickRate);
}

void SynthControls::Update(const CSmoothedParameters& parameters) noexcept {
    const auto at = [&](int parameter) { return parameters.Real(parameter); };
    oscillators[0] = OscillatorFrom(parameters, 0);
    oscillators[1] = OscillatorFrom(parameters, kOsc2Wave - kOsc1Wave);
    subWave = parameters.Step(kSubWave);
    subLevel = at(kSubLevel);
    noiseLevel = at(kNoiseLevel);
    const float fm = kPercent * at(kFmAmount);
    const float fmEnvelope = kPercent * at(kFmEnvelope);
    fmTurns = kHighestFmTurns * fm * fm;
    fmEnvelopeTurns = kHighestFmTurns * fmEnvelope * fmEnvelope;
    unisonVoices = parameters.Step(kUnisonVoices);
    unisonDetune = kCent * at(kUnisonDetune);
    unisonSpread = kPercent * at(kUnisonSpread);
    startPhase = parameters.Step(kStartPhase);
    playMode = parameters.Step(kPlayMode);
    // The shortest setting is no glide at all.
    const float glideMs = at(kGlideTime);
    glideShare = glideMs < 1.01f ? 1.0f : OnePoleShare(glideMs * kMillisecond / kGlideConstants, tickRate);
    pan = kPercent * at(kPan);
    volume = at(kVolume);
    stereoWidth = kPercent * at(kStereoWidth);
    UpdateFilterAndEnvelopes(parameters);
    UpdateModulation(parameters);
}

void SynthControls::UpdateFilterAndEnvelopes(const CSmoothedParameters& parameters) noexcept {
    const auto at = [&](int parameter) { return parameters.Real(parameter); };
    filterType = parameters.Step(kFilterType);
    cutoffOctave = Log2(at(kCutoff));
    UpdateResonance(at(kResonance));
    drive = kPercent * at(kDrive);
    filterEnvelope = at(kFilterEnvelope);
    keyTrack = kPercent * at(kKeyTrack);
    velocityToFilter = at(kVelocityToFilter);
    ampShape = EnvelopeShape::FromTimes(at(kAmpAttack), at(kAmpDecay), at(kAmpSustain), at(kAmpRelease), sampleRate);
    modShape = EnvelopeShape::FromTimes(at(kModAttack), at(kModDecay), kPercent * at(kModSustain), at(kModRelease),
                                        sampleRate);
    velocityToLevel = kPercent * at(kVelocityToLevel);
    modToPitch = at(kModToPitch);
    modToWidth = kPercent * at(kModToWidth);
}

// Q from 0.7 up to 19 at 95 %. From there on the damping bends down through zero, and in step with it the
// filter's own amplitude begins to damp it. The amplitude of the free oscillation is the root of -damping /
// saturation: zero up to 98.6 %, 1 at 100 %.
void SynthControls::UpdateResonance(float percent) noexcept {
    constexpr float kSaturationFrom = 95.0f;
    constexpr float kLeast = 0.05f;  // -damping at 100 %: enough to start at once, little enough to stay a sine
    const float passive = 1.41421356f * Exp2(-5.0f * kPercent * percent);
    const float beyond = std::max(0.0f, (percent - kSaturationFrom) / (100.0f - kSaturationFrom));
    damping = passive - (kLeast + kHighestResonanceDamping) * beyond * beyond;
    saturation = kLeast * beyond * beyond;
}

void SynthControls::UpdateModulation(const CSmoothedParameters& parameters) noexcept {
    const auto at = [&](int parameter) { return parameters.Real(parameter); };
    lfo1Wave = parameters.Step(kLfo1Wave);
    lfo2Wave = parameters.Step(kLfo2Wave);
    lfo1TurnsPerTick = at(kLfo1Rate) / tickRate;
    lfo2TurnsPerTick = at(kLfo2Rate) / tickRate;
    lfo1FadePerTick = 1.0f / std::max(1.0f, at(kLfo1Fade) * kMillisecond * tickRate);
    lfo1ToPitch = kCent * at(kLfo1ToPitch);
    lfo1ToCutoff = at(kLfo1ToCutoff);
    lfo1ToWidth = kPercent * at(kLfo1ToWidth);
    lfo2Synced = parameters.Step(kLfo2Sync) != 0;
    lfo2ToLevel = kPercent * at(kLfo2ToLevel);
    lfo2ToPan = kPercent * at(kLfo2ToPan);
    lfo2ToCutoff = at(kLfo2ToCutoff);
    wheelToVibrato = kCent * at(kWheelToVibrato);
    wheelToCutoff = at(kWheelToCutoff);
    touchToVibrato = kCent * at(kTouchToVibrato);
    touchToCutoff = at(kTouchToCutoff);
    bendRange = at(kBendRange);
}

}  // namespace quibplug
