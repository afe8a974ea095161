// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Pure edits of a lane of automation: from one list of points to the next, the selection moved along. They know
// no window and no thread. Nothing changed gives the same list object. What is edited lies within the limits;
// points that are not meant keep their bits and their order.

#include <cstdint>
#include <memory>
#include <vector>

#include "model/CEventLanes.h"

namespace quib {

// What the points of a lane may be.
struct LaneLimits {
    float minimum = 0;
    float maximum = 1;
    ELaneKind kind = ELaneKind::kContinuous;
    float end = 0;  // steps: the last position that edits give

    float Range() const noexcept { return maximum - minimum; }
    // Position and value within the limits; switches are on or off, programs are whole numbers.
    Point Repaired(Point point) const noexcept;
};

// Whether the value stays until the next point, instead of going there in a line.
bool IsStepped(ELaneKind kind) noexcept;

// Indices into the points, ascending, each once.
using PointSelection = std::vector<std::uint32_t>;

struct LaneState {
    std::shared_ptr<const PointList> points;  // never null
    PointSelection selection;
};

bool IsSelected(const LaneState& state, std::uint32_t point) noexcept;
// Selects exactly `points`, given in any order; indices beyond the list are left out.
LaneState Select(const LaneState& from, PointSelection points);
LaneState ToggleSelected(const LaneState& from, std::uint32_t point);
LaneState SelectAll(const LaneState& from);
// The points of [from, to] steps with a value of [low, high].
PointSelection PointsWithin(const LaneState& state, Point corner, Point opposite);

// The new point comes after those at its position and is the selection.
LaneState AddPoint(const LaneState& from, const LaneLimits& limits, Point point);
LaneState RemoveSelected(const LaneState& from);
// Moves the selection as one block, which stops at the limits with its shape. A point passes its neighbours
// where the way is long enough; at the same position it stays on its side, which makes a jump.
LaneState MoveSelected(const LaneState& from, const LaneLimits& limits, float steps, float value);
// Gives the selected points a position or a value, each as one.
LaneState SetValueOfSelected(const LaneState& from, const LaneLimits& limits, float value);
LaneState MoveSelectedTo(const LaneState& from, const LaneLimits& limits, float position);
// The points of [shape.front().x, shape.back().x] give way to `shape`, which is ascending and becomes the
// selection where `select` says so. A curve that comes in from the left or leaves to the right keeps its course
// outside: where it needs one, a point is put at the edge.
LaneState ReplaceSpan(const LaneState& from, const LaneLimits& limits, const PointList& shape, bool select);

// Points cut or copied; the positions count from the first of them.
struct LaneClip {
    PointList points;
    float origin = 0;  // where it was taken, steps
};
LaneClip CopySelected(const LaneState& state);
// The pasted points are the selection; what stood in their span goes. As far as the end allows it.
LaneState PastePoints(const LaneState& from, const LaneLimits& limits, const LaneClip& clip, float position);

}  // namespace quib
