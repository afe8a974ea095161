// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Positions on a grid. Files keep four decimals, so what lies that near to a line lies on it. Grids
// are in steps and double, which keeps triplets exact; one that is not finite and above 0 snaps nothing.

namespace quib {

// In steps: an end is the sum of two rounded numbers, so one of the last decimal and a little.
constexpr float kPositionTolerance = 0.00015F;

// Equal within the tolerance, or within the precision of far positions.
bool IsSamePosition(float a, float b) noexcept;

// The grid line at or before, nearest to, at or after `position`.
float SnapDown(float position, double grid) noexcept;
float SnapNearest(float position, double grid) noexcept;
float SnapUp(float position, double grid) noexcept;

// The move, near to `steps`, that brings `anchor` onto the nearest line.
float SnappedMove(float anchor, float steps, double grid) noexcept;

}  // namespace quib
