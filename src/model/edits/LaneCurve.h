// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The line that automation plays, as it is drawn: made of the engine's own ValueAt. Pure functions, any thread.

#include <optional>

#include "model/edits/LaneEdits.h"

namespace quib {

// The least and the greatest value over a column of pixels.
struct CurveColumn {
    bool played = false;
    float low = 0;
    float high = 0;
};
// `count` columns of `width` steps each, whatever the number of points.
std::vector<CurveColumn> CurveColumns(const PointList& points, double from, double width, int count, ELaneKind kind);

// The steps between which two lines may differ, infinite where there is no common point; nothing where the points are
// the same.
struct StepSpan {
    float from = 0;
    float to = 0;
};
std::optional<StepSpan> DifferingSpan(const PointList& before, const PointList& after);

// How many points lie in [from, to] steps.
std::size_t PointCount(const PointList& points, float from, float to);

}  // namespace quib
