// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The chorus's parameters in the host's order and its programs. The order is part of the saved state:
// new parameters go to the end.

#include <span>

#include "dsp/CEffectBase.h"

namespace quibplug {

enum ChorusParameter : int {
    kChorusVoices = kFirstOwnParameter,
    kChorusRate,
    kChorusDepth,
    kChorusDelay,
    kChorusSpread,
    kChorusShape,  // as SwingShape
    kChorusLowCut,
    kChorusHighCut,
    kChorusParameterCount
};

constexpr int kMostChorusVoices = 4;

std::span<const ParameterSpec> ChorusParameters();
std::span<const ProgramSpec> ChorusPrograms();

}  // namespace quibplug
