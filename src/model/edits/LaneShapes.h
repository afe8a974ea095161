// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Shapes of automation as points: what the drawing tools write, and recorded movements with few points. Pure
// functions, any thread.

#include <cstdint>

#include "model/edits/LaneEdits.h"

namespace quib {

enum class ELaneShape { kLine, kRamp, kSine, kRandom };

// A shape from one corner to the other. `period`: steps of one ramp, wave or random value; `tick`: steps between
// the points of a curve; both above 0.
struct LaneStroke {
    Point from;
    Point to;
    float period = 4;
    float tick = 0.0625F;
    std::uint32_t seed = 0;  // of the random values
};

// Ascending points from the earlier corner to the later one, at most kLongestShape. A line goes from corner to
// corner; a ramp rises or falls as the hand went, once a period; a sine swings between both values; random
// values lie between them, each held for a period. Empty where both corners are at one position.
constexpr std::size_t kLongestShape = 1 << 16;
PointList MakeShape(ELaneShape shape, const LaneStroke& stroke);

// Fewer points for a movement: the line through them is never further than `tolerance` (in values) from the one
// through `samples`, at any position. Samples at or before an earlier one are left out. For lanes that step the
// points are the changes themselves.
PointList Thinned(const PointList& samples, const LaneLimits& limits, float tolerance);

// Recorded movements keep within this share of the lane's range.
constexpr float kRecordingTolerance = 0.005F;

}  // namespace quib
