// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What plug-ins are told of the time of a block. Render thread and its pool.

#include "engine/BlockContext.h"
#include "engine/CTransport.h"

namespace quib {

// Position, tempo, bar and loop at the start of the block, into `block.time`. Its steps have run; sample
// position and state of the transport are there already.
void FillBlockTime(BlockContext& block, const CTransport& transport, const EngineSettings& settings) noexcept;

// The same at a frame of the block.
PlayTime TimeAt(const BlockContext& block, int frame) noexcept;

}  // namespace quib
