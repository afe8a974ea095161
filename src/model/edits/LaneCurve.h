// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The line that automation plays, as it is drawn: made of the engine's own ValueAt. Pure functions, any thread.

#include "model/edits/LaneEdits.h"

namespace quib {

// The corners of the line over [from, to] steps, with its values at both ends; jumps and steps are two corners at
// one position. Empty where nothing is played.
PointList CurveCorners(const PointList& points, float from, float to, ELaneKind kind);

// The least and the greatest value over a column of pixels.
struct CurveColumn {
    bool played = false;
    float low = 0;
    float high = 0;
};
// `count` columns of `width` steps each, for more points than there are pixels.
std::vector<CurveColumn> CurveColumns(const PointList& points, double from, double width, int count, ELaneKind kind);

// How many points lie in [from, to] steps.
std::size_t PointCount(const PointList& points, float from, float to);

}  // namespace quib
