// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The loop player's parameters in the host's order and its programs. The order is part of the saved
// state: new parameters go to the end.

#include <span>

#include "dsp/ParameterSpec.h"

namespace quibplug {

enum LoopParameter : int {
    kLoopVolume,
    kLoopPan,
    kLoopSync,     // 0 the loop's own tempo, 1 the host's
    kLoopSpeed,    // as LoopSpeed
    kLoopStretch,  // as LoopStretch
    kLoopPlay,     // as LoopPlay
    kLoopTune,
    kLoopSliceDecay,
    kLoopFade,
    kLoopLowCut,
    kLoopHighCut,
    kLoopVelocity,
    kLoopParameterCount
};

enum class LoopSpeed { kHalf, kPlain, kDouble };
enum class LoopStretch { kSlices, kSmooth };
enum class LoopPlay { kGate, kOneShot, kToggle };

std::span<const ParameterSpec> LoopParameters();
std::span<const ProgramSpec> LoopPrograms();

}  // namespace quibplug
