// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CLaneView.h"

#include <algorithm>
#include <cmath>

namespace quib {

double CLaneView::YOf(float value) const noexcept {
    const float range = limits.Range() > 0 ? limits.Range() : 1;
    return headerHeight + kInset + Room() * (1 - static_cast<double>((value - limits.minimum) / range));
}

float CLaneView::ValueAt(double y) const noexcept {
    const double share = std::clamp(1 - (y - headerHeight - kInset) / Room(), 0.0, 1.0);
    return limits.minimum + limits.Range() * static_cast<float>(share);
}

float CLaneView::ValuePerPixel() const noexcept { return limits.Range() / static_cast<float>(Room()); }

std::optional<std::uint32_t> CLaneView::PointAt(const LaneState& state, int x, int y) const {
    const PointList& points = *state.points;
    const auto left = static_cast<float>(StepAt(x - kReach));
    const auto right = static_cast<float>(StepAt(x + kReach));
    auto point = std::lower_bound(points.begin(), points.end(), left,
                                  [](const Point& candidate, float step) { return candidate.x < step; });
    std::optional<std::uint32_t> found;
    double nearest = kReach;
    for (; point != points.end() && point->x <= right; ++point) {
        const double distance = std::hypot(XOf(static_cast<double>(point->x)) - x, YOf(point->y) - y);
        if (distance > nearest) continue;
        nearest = distance;
        found = static_cast<std::uint32_t>(point - points.begin());
    }
    return found;
}

std::optional<std::uint32_t> CLaneView::SegmentAt(const LaneState& state, int x, int y) const {
    const PointList& points = *state.points;
    const auto step = static_cast<float>(StepAt(x));
    const auto next = std::upper_bound(points.begin(), points.end(), step,
                                       [](float wanted, const Point& point) { return wanted < point.x; });
    const auto value = quib::ValueAt(points, step, limits.kind);
    if (!value || next == points.end() || std::abs(YOf(*value) - y) > kSegmentReach) return std::nullopt;
    return static_cast<std::uint32_t>(next - points.begin() - 1);
}

}  // namespace quib
