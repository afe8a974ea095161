// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Plays an instrument's take in place of its plug-in. Any render thread; touches nothing of other instruments.

#include "engine/BlockContext.h"

namespace quib {

// Where an instrument's sound comes from in a block.
enum class ESoundSource {
    kPlugin,
    kTake,      // of the song, which must be what the take was rendered from
    kTakeEnds,  // the plug-in again, over the end of the take
};
ESoundSource SoundSourceOf(const BlockInstrument& entry, const BlockContext& block) noexcept;

// Fills the planes of the published take, and has the entry sound from them: the song where it is, faded where it
// jumps or ends.
void PlayTake(BlockInstrument& entry, const BlockContext& block) noexcept;
// The same with no more than the fade out of what was played last.
void EndTake(BlockInstrument& entry, const BlockContext& block) noexcept;
// Adds what the plug-in gave, whose stereo signal is at the end of the chain; `fadesOut`: only its end.
void AddPlugin(const BlockInstrument& entry, const float* left, const float* right, int frames, bool fadesOut) noexcept;

// Takes the beginnings of the song's notes out of the block's events: the take has them.
void HoldNotes(InstrumentPlayState& play) noexcept;
// Has the plug-in begin what the take sounded last, which may be none.
void StrikeHeldNotes(InstrumentPlayState& play) noexcept;
// Ends in the plug-in what no live key holds.
void EndOthersThanKeys(InstrumentPlayState& play, const CPlugin& plugin) noexcept;

}  // namespace quib
