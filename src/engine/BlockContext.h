// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The published objects that one block works with, each read once at its start. Render thread; the
// pool reads it between its barriers. Nothing in it outlives the block.

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "engine/EngineSettings.h"
#include "model/CInstrument.h"
#include "model/plugin/CPlugin.h"

namespace quib {

struct BlockInstrument {
    CInstrument* instrument = nullptr;
    CPlugin* plugin = nullptr;  // never null: instruments without one are left out
    std::array<CPlugin*, kInsertCount> inserts{};
    // The stereo signal at the end of the instrument's chain; null when it has none in this block.
    const float* left = nullptr;
    const float* right = nullptr;
};

struct BlockContext {
    BlockContext() { instruments.reserve(kMaximumInstruments); }

    std::vector<BlockInstrument> instruments;
    std::array<CPlugin*, kInsertCount> masterInserts{};
    std::array<CPlugin*, kSendCount> sharedEffects{};
    const CEventLanes* masterLanes = nullptr;
    std::uint32_t ballsShown = 0;  // instrument whose balls are in the picture; 0: none

    int frames = 0;
    double sampleRate = 44100.0;
    bool playing = false;
    bool songMode = false;
    float songPosition = 0;  // steps
    float stepFraction = 0;  // of the current step
    std::uint32_t now = 0;   // milliseconds
    PlayTime time;
};

// Frame of the block at which something of that millisecond falls: what came in during the last block keeps
// its distances in this one.
inline std::int32_t FrameOf(std::uint32_t time, const BlockContext& block) noexcept {
    const auto age = static_cast<std::int32_t>(block.now - time);
    const double frame = block.frames - age * block.sampleRate / 1000.0;
    return static_cast<std::int32_t>(std::clamp(frame, 0.0, block.frames - 1.0));
}

}  // namespace quib
