// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The flanger's parameters in the host's order, its sweep lengths and its programs. The order is part
// of the saved state: new parameters go to the end.

#include <span>

#include "dsp/CEffectBase.h"

namespace quibplug {

enum FlangerParameter : int {
    kFlangerSync = kFirstOwnParameter,  // 0 by rate, 1 by note
    kFlangerRate,
    kFlangerNote,
    kFlangerDelay,
    kFlangerDepth,
    kFlangerFeedback,
    kFlangerStereo,
    kFlangerShape,  // as SwingShape
    kFlangerLowCut,
    kFlangerParameterCount
};

// Quarter notes of a sweep to and fro.
float SweepQuarters(int note) noexcept;

std::span<const ParameterSpec> FlangerParameters();
std::span<const ProgramSpec> FlangerPrograms();

}  // namespace quibplug
