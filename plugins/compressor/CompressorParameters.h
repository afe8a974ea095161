// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The compressor's parameters in the host's order and its programs. The order is part of the saved
// state: new parameters go to the end.

#include <span>

#include "dsp/CEffectBase.h"

namespace quibplug {

enum CompressorParameter : int {
    kCompressorThreshold = kFirstOwnParameter,
    kCompressorRatio,
    kCompressorKnee,
    kCompressorAttack,
    kCompressorRelease,
    kCompressorMakeUp,
    kCompressorLink,
    kCompressorLowCut,  // of what is measured, not of what is heard
    kCompressorCeiling,
    kCompressorLimiterRelease,
    kCompressorParameterCount
};

std::span<const ParameterSpec> CompressorParameters();
std::span<const ProgramSpec> CompressorPrograms();

}  // namespace quibplug
