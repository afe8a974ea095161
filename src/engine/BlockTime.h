// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What plug-ins are told of the time of a block. Render thread.

#include "engine/BlockContext.h"
#include "engine/CTransport.h"

namespace quib {

// Position, tempo, bar, loop and state of the transport at the start of the block, into `block.time`.
void FillBlockTime(BlockContext& block, const CTransport& transport, const EngineSettings& settings,
                   bool recording) noexcept;

}  // namespace quib
