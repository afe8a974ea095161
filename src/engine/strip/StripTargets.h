// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where the smoothed gains of a strip and of the master go: worked out once a block from plain numbers,
// constant over the block. Render thread; holds no state.

#include "engine/strip/CLevelTables.h"
#include "model/StripSettings.h"
#include "model/StripState.h"

namespace quib {

// What the gains of one strip depend on, as read at the start of a block. Switches are on when not zero;
// side A of the crossfader wins.
struct StripInput : StripValues {
    float soloMuted = 0;
    bool hasSendOutputs = false;  // the plug-in has an output pair of its own for every send
};

// Linear gains. A held send never falls below kHeldSendGain while it moves.
struct StripTargets {
    float gainLeft = 0, gainRight = 0;
    float send[kSendCount] = {};
    float eqAmount = 0;
    bool holdSend[kSendCount] = {};
};

struct MasterTargets {
    float gain = 1;
    float crossfadeA = 0, crossfadeB = 0;
};

constexpr float kMasterSmoothing = 0.005f;  // of the difference, per sample

constexpr float kSilentGain = 0.000001f;  // of a muted strip and of a send that is off
constexpr float kHeldSendGain = 0.000021f;
constexpr float kAudibleSendGain = 0.00002f;  // above it the shared effect of the send runs

// The crossfade gains are the engine's smoothed ones.
StripTargets MakeStripTargets(const StripInput& settings, const CLevelTables& tables, float crossfadeGainA,
                              float crossfadeGainB) noexcept;

// Both controls 0..127.
MasterTargets MakeMasterTargets(float masterLevel, float crossfader, const CLevelTables& tables) noexcept;

}  // namespace quib
