// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/LaneCurve.h"

#include <algorithm>
#include <limits>

namespace quib {

namespace {

auto FirstFrom(const PointList& points, float position) {
    return std::lower_bound(points.begin(), points.end(), position,
                            [](const Point& point, float wanted) { return point.x < wanted; });
}

auto FirstAfter(const PointList& points, float position) {
    return std::upper_bound(points.begin(), points.end(), position,
                            [](float wanted, const Point& point) { return wanted < point.x; });
}

void Widen(CurveColumn& column, float value) noexcept {
    column.low = column.played ? std::min(column.low, value) : value;
    column.high = column.played ? std::max(column.high, value) : value;
    column.played = true;
}

}  // namespace

std::vector<CurveColumn> CurveColumns(const PointList& points, double from, double width, int count, ELaneKind kind) {
    std::vector<CurveColumn> columns(static_cast<std::size_t>(std::max(0, count)));
    auto point = FirstFrom(points, static_cast<float>(from));
    auto next = point;
    // The neighbours of a place are all that its value depends on; places ascend.
    const auto valueAt = [&](float place) {
        while (next != points.end() && next->x <= place) ++next;
        const auto before = next == points.begin() ? next : next - 1;
        return ValueAt({before, next == points.end() ? next : next + 1}, place, kind);
    };
    for (std::size_t index = 0; index < columns.size(); ++index) {
        const auto left = static_cast<float>(from + static_cast<double>(index) * width);
        const auto right = static_cast<float>(from + static_cast<double>(index + 1) * width);
        CurveColumn& column = columns[index];
        if (const auto value = valueAt(left)) Widen(column, *value);
        for (; point != points.end() && point->x < right; ++point) Widen(column, point->y);
        if (!column.played || IsStepped(kind)) continue;
        if (const auto value = valueAt(right)) Widen(column, *value);
    }
    return columns;
}

std::optional<StepSpan> DifferingSpan(const PointList& before, const PointList& after) {
    const auto [first, other] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    if (first == before.end() && other == after.end()) return std::nullopt;
    const auto start = std::distance(before.begin(), first);
    const auto left = before.size() - static_cast<std::size_t>(start);
    const auto right = after.size() - static_cast<std::size_t>(start);
    const auto common = static_cast<std::ptrdiff_t>(std::min(left, right));
    const auto last = std::mismatch(before.rbegin(), before.rbegin() + common, after.rbegin()).first;
    constexpr float kFar = std::numeric_limits<float>::infinity();
    return StepSpan{start == 0 ? -kFar : before[static_cast<std::size_t>(start) - 1].x,
                    last == before.rbegin() ? kFar : std::prev(last)->x};
}

std::size_t PointCount(const PointList& points, float from, float to) {
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, FirstAfter(points, to) - FirstFrom(points, from)));
}

}  // namespace quib
