// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/LaneCurve.h"

#include <algorithm>

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

PointList CurveCorners(const PointList& points, float from, float to, ELaneKind kind) {
    PointList corners;
    const auto add = [&](Point corner) {
        if (IsStepped(kind) && !corners.empty() && corners.back().y != corner.y)
            corners.push_back({corner.x, corners.back().y});
        corners.push_back(corner);
    };
    const auto first = FirstFrom(points, from);
    if (first != points.begin()) {
        if (const auto value = ValueAt(points, from, kind); value && (first == points.end() || first->x != from))
            add({from, *value});
    }
    for (auto point = first; point != points.end() && point->x <= to; ++point) add(*point);
    if (corners.empty() || corners.back().x >= to) return corners;
    if (const auto value = ValueAt(points, to, kind)) add({to, *value});
    return corners;
}

std::vector<CurveColumn> CurveColumns(const PointList& points, double from, double width, int count, ELaneKind kind) {
    std::vector<CurveColumn> columns(static_cast<std::size_t>(std::max(0, count)));
    auto point = FirstFrom(points, static_cast<float>(from));
    for (std::size_t index = 0; index < columns.size(); ++index) {
        const auto left = static_cast<float>(from + static_cast<double>(index) * width);
        const auto right = static_cast<float>(from + static_cast<double>(index + 1) * width);
        CurveColumn& column = columns[index];
        if (const auto value = ValueAt(points, left, kind)) Widen(column, *value);
        for (; point != points.end() && point->x < right; ++point) Widen(column, point->y);
        if (column.played && !IsStepped(kind)) Widen(column, ValueAt(points, right, kind).value_or(column.low));
    }
    return columns;
}

std::size_t PointCount(const PointList& points, float from, float to) {
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, FirstAfter(points, to) - FirstFrom(points, from)));
}

}  // namespace quib
