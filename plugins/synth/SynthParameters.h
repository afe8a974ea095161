// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The parameters of the synthesiser in the host's order, and its programs. The order is part of the
// saved state: new ones go to the end.

#include <span>

#include "dsp/ParameterSpec.h"

namespace quibplug {

enum SynthParameter : int {
    kOsc1Wave,
    kOsc1Octave,
    kOsc1Semitone,
    kOsc1Fine,
    kOsc1Width,
    kOsc1Level,
    kOsc2Wave,
    kOsc2Octave,
    kOsc2Semitone,
    kOsc2Fine,
    kOsc2Width,
    kOsc2Level,
    kSubWave,
    kSubLevel,
    kNoiseLevel,
    kFmAmount,
    kFmEnvelope,
    kUnisonVoices,
    kUnisonDetune,
    kUnisonSpread,
    kStartPhase,
    kPlayMode,
    kGlideTime,
    kFilterType,
    kCutoff,
    kResonance,
    kDrive,
    kFilterEnvelope,
    kKeyTrack,
    kVelocityToFilter,
    kAmpAttack,
    kAmpDecay,
    kAmpSustain,
    kAmpRelease,
    kVelocityToLevel,
    kModAttack,
    kModDecay,
    kModSustain,
    kModRelease,
    kModToPitch,
    kModToWidth,
    kLfo1Wave,
    kLfo1Rate,
    kLfo1Fade,
    kLfo1ToPitch,
    kLfo1ToCutoff,
    kLfo1ToWidth,
    kLfo2Wave,
    kLfo2Rate,
    kLfo2Sync,
    kLfo2ToLevel,
    kLfo2ToPan,
    kLfo2ToCutoff,
    kWheelToVibrato,
    kWheelToCutoff,
    kTouchToVibrato,
    kTouchToCutoff,
    kBendRange,
    kPan,
    kVolume,
    kStereoWidth,
    kSynthParameterCount
};

enum Wave : int { kWaveSaw, kWavePulse, kWaveTriangle, kWaveSine };
enum SubWave : int { kSubSquare, kSubSine };
enum StartPhase : int { kPhaseFixed, kPhaseRandom };
enum PlayMode : int { kModePoly, kModeMono, kModeLegato };
enum FilterType : int { kLowPass24, kLowPass12, kBandPass12, kHighPass12 };
enum LfoWave : int { kLfoSine, kLfoTriangle, kLfoSaw, kLfoSquare, kLfoRandom };

std::span<const ParameterSpec> SynthParameters();
std::span<const ProgramSpec> SynthPrograms();
// The second part of SynthPrograms(): saved states tell programs by number, so new ones go to its end.
std::span<const ProgramSpec> FurtherSynthPrograms();

}  // namespace quibplug
