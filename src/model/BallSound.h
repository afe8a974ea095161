// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Assignments of the X/Y ball pad: which parameters follow the ball, between which values. The list
// of an instrument's ball sounds is published whole; where each ball is belongs to the render thread.

#include <cstdint>
#include <vector>

namespace quib {

// What an assignment moves; written to files as the number.
enum class EBallTarget : std::int32_t { kPlugin = 0, kMix = 1, kInsert1 = 2, kInsert2 = 3 };

struct BallAssignment {
    EBallTarget target = EBallTarget::kPlugin;
    std::int32_t parameter = 0;  // index in the plug-in's parameters or the mix lanes
    float low = 0;               // 0..128: value with the ball at 0
    float high = 128;            // 0..128: value with the ball at 127
    float value = 0;             // kept for the ball window: the value last shown

    friend bool operator==(const BallAssignment&, const BallAssignment&) = default;
};

struct BallSound {
    float x = 64;                      // 0..127
    float y = 64;                      // 0..127
    std::int32_t rate = 0;             // 0 still; r >= 1: a new place every 2^(r-1) steps
    std::int32_t channelSelector = 0;  // 0 off, 1 every channel, 2..17 MIDI channels 1..16
    std::int32_t controllerX = 0;      // 0..127
    std::int32_t controllerY = 0;      // 0..127
    std::vector<BallAssignment> horizontal;
    std::vector<BallAssignment> vertical;

    friend bool operator==(const BallSound&, const BallSound&) = default;
};

using BallSoundList = std::vector<BallSound>;

}  // namespace quib
