// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Parameter changes that playing makes: automation and the ball pad. Render thread; the part of one
// instrument may run on any thread of the pool.

#include <vector>

#include "engine/BlockContext.h"

namespace quib {

// Gives a strip setting a value in its lane's range; an equaliser band is computed anew at once.
void ChangeMixValue(CInstrument& instrument, int lane, float value, double sampleRate) noexcept;

// Sets what the assignments name from the ball's place on one axis, 0..127.
void MoveBall(BlockInstrument& entry, const std::vector<BallAssignment>& assignments, float place,
              double sampleRate) noexcept;

// Plays the automation of one instrument for the block: that of the song and that of its current
// pattern. MIDI lanes become events at the start of the block.
void PlayInstrumentAutomation(BlockInstrument& entry, const BlockContext& block) noexcept;

// Lets the next values of all automation count as new.
void ForgetAutomation(BlockContext& block) noexcept;

// Plays the automation of the master section for the block.
void PlayMasterAutomation(BlockContext& block, EngineSettings& settings) noexcept;

}  // namespace quib
