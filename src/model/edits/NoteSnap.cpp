// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/NoteSnap.h"

#include <algorithm>
#include <cmath>

namespace quib {

namespace {

// Two units in the last place of a float, as a share of it.
constexpr double kFloatPrecision = 2.4e-7;

double ToleranceAt(double position) noexcept {
    return std::max<double>(kPositionTolerance, std::abs(position) * kFloatPrecision);
}

// The line whose number is `round`ed from the position in grids, where `tolerance` is in grids as well.
template <class Round>
float SnapTo(float position, double grid, Round&& round) noexcept {
    if (!(grid > 0) || !std::isfinite(grid)) return position;
    return static_cast<float>(round(position / grid, ToleranceAt(position) / grid) * grid);
}

}  // namespace

bool IsSamePosition(float a, float b) noexcept {
    return std::abs(static_cast<double>(a) - b) <= ToleranceAt(std::max(std::abs(a), std::abs(b)));
}

float SnapDown(float position, double grid) noexcept {
    return SnapTo(position, grid, [](double place, double tolerance) { return std::floor(place + tolerance); });
}

float SnapNearest(float position, double grid) noexcept {
    return SnapTo(position, grid, [](double place, double) { return std::floor(place + 0.5); });
}

float SnapUp(float position, double grid) noexcept {
    return SnapTo(position, grid, [](double place, double tolerance) { return std::ceil(place - tolerance); });
}

float SnappedMove(float anchor, float steps, double grid) noexcept {
    return grid > 0 ? SnapNearest(anchor + steps, grid) - anchor : steps;
}

}  // namespace quib
