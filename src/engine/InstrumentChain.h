// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One instrument's part of a block up to its channel strip: automation, events, its plug-in and its
// inserts. Runs on any render thread; touches nothing of other instruments.

#include "engine/CStripPieces.h"

namespace quib {

// Leaves the stereo signal in `entry.left` and `entry.right`, or null where there is none. Where automation
// changes something within the block, what it acts on is rendered in pieces: the strip too.
void RenderChain(BlockInstrument& entry, const BlockContext& block, CStripPieces& strip) noexcept;

}  // namespace quib
