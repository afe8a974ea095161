// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The published objects that one block works with, each read once at its start. Render thread; the
// pool reads it between its barriers. Nothing in it outlives the block.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "engine/CBlockGrid.h"
#include "engine/EngineSettings.h"
#include "model/CInstrument.h"
#include "model/control/CControlMap.h"
#include "model/plugin/CPlugin.h"

namespace quib {

struct BlockInstrument {
    CInstrument* instrument = nullptr;
    CPlugin* plugin = nullptr;  // never null: instruments without one are left out
    std::array<CPlugin*, kInsertCount> inserts{};
    // The stereo signal at the end of the instrument's chain; null when it has none in this block.
    const float* left = nullptr;
    const float* right = nullptr;
    const CAudioPlanes* take = nullptr;  // the channels of a take that plays in place of the plug-in's outputs

    const float* Output(int channel) const noexcept {
        return take != nullptr ? take->Plane(channel) : plugin->Output(channel);
    }
};

// A beat that is counted in before playing.
struct Beat {
    std::int32_t frame;
    bool accented;
};

struct BlockContext {
    static constexpr std::size_t kMaximumBeats = 1024;

    BlockContext() { instruments.reserve(kMaximumInstruments); }

    std::vector<BlockInstrument> instruments;
    std::array<CPlugin*, kInsertCount> masterInserts{};
    std::array<CPlugin*, kSendCount> sharedEffects{};
    const CEventLanes* masterLanes = nullptr;
    const CControlMap* controls = nullptr;
    std::uint32_t ballsShown = 0;  // instrument whose balls are in the picture; 0: none

    int frames = 0;
    double sampleRate = 44100.0;
    bool songMode = false;
    CBlockGrid grid;           // empty while nothing plays
    std::uint64_t now = 0;     // nanoseconds
    std::uint64_t number = 0;  // of the block
    PlayTime time;             // at its first frame
    double quartersPerStep = 0.25;
    double quartersPerBar = 4.0;
    CFixedList<Beat> beats{kMaximumBeats};
    int beatFrames = 0;    // of the tempo
    int beatsToStart = 0;  // that are counted in before playing begins; 0 when none are
};

// Playing begins with the first frame of the block.
inline bool BeginsPlaying(const BlockContext& block) noexcept {
    return block.time.playing && block.time.samplePosition == 0;
}

// Frame of the block at which something of that nanosecond falls: what came in during the last block keeps
// its distances in this one.
inline std::int32_t FrameOf(std::uint64_t time, const BlockContext& block) noexcept {
    const auto age = static_cast<std::int64_t>(block.now - time);
    const double frame = std::round(block.frames - static_cast<double>(age) * block.sampleRate * 1e-9);
    return static_cast<std::int32_t>(std::clamp(frame, 0.0, block.frames - 1.0));
}

}  // namespace quib
