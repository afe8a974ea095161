// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The engine's answer to commands of the editing thread, at the start of a block. Render thread.

#include "engine/CMetronome.h"
#include "engine/CMidiRouter.h"
#include "engine/CSongTime.h"
#include "engine/EngineMessages.h"

namespace quib {

// The parts of the engine that commands reach.
struct CommandTargets {
    BlockContext& block;
    const EngineSettings& settings;
    CSongTime& songTime;
    CMidiRouter& router;
    CLiveKeys& keys;
    CMetronome& metronome;
    bool countsIn;  // playing begins behind bars that are counted in
};

// Runs every command that waits. One for an instrument that is gone does nothing.
void RunCommands(CBoundedQueue<EngineCommand>& commands, const CommandTargets& targets) noexcept;

}  // namespace quib
