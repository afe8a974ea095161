// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where the smoothed gains of a strip and of the master go: worked out once a block from plain numbers,
// constant over the block. Render thread; holds no state.

#include "engine/strip/CLevelTables.h"
#include "model/StripState.h"

namespace quib {

// The mix settings of one instrument as read at the start of a block. Switches are on when not zero.
struct StripSettings {
    float level = 0;  // 0..127
    float pan = 0;    // -1 left .. 1 right
    float mute = 0, soloMuted = 0;
    float crossfadeA = 0, crossfadeB = 0;  // membership; A wins
    float sendOn[kSendCount] = {};
    float sendLevel[kSendCount] = {};  // 0..127
    float eqOn = 0;                    // wanted amount, 0 or 1
    bool hasSendOutputs = false;       // the plug-in has an output pair of its own for every send
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

constexpr float kSilentGain = 0.000001f;  // of a muted strip and of a send that is off
constexpr float kHeldSendGain = 0.000021f;
constexpr float kAudibleSendGain = 0.00002f;  // above it the shared effect of the send runs

// The crossfade gains are the engine's smoothed ones.
StripTargets MakeStripTargets(const StripSettings& settings, const CLevelTables& tables, float crossfadeGainA,
                              float crossfadeGainB) noexcept;

// Both controls 0..127.
MasterTargets MakeMasterTargets(float masterLevel, float crossfader, const CLevelTables& tables) noexcept;

}  // namespace quib
