// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The reverb's parameters in the host's order and its programs. The order is part of the saved
// state: new parameters go to the end.

#include <span>

#include "dsp/CEffectBase.h"

namespace quibplug {

enum ReverbParameter : int {
    kReverbPreDelay = kFirstOwnParameter,
    kReverbSize,
    kReverbDecay,
    kReverbHighDecay,  // of the decay time
    kReverbDamping,    // where the high decay sets in
    kReverbLowCut,
    kReverbHighCut,
    kReverbEarly,
    kReverbLate,
    kReverbDiffusion,
    kReverbModulation,
    kReverbModulationRate,
    kReverbParameterCount
};

constexpr float kReverbLongestPreDelayMs = 250.0f;
constexpr float kReverbLargestSize = 50.0f;  // metres

std::span<const ParameterSpec> ReverbParameters();
std::span<const ProgramSpec> ReverbPrograms();

}  // namespace quibplug
