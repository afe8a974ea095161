// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/LaneEdits.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace quib {

namespace {

bool Earlier(const Point& a, const Point& b) noexcept { return a.x < b.x; }

LaneState WithPoints(const LaneState& from, PointList points, PointSelection selection) {
    if (points == *from.points) return {from.points, std::move(selection)};
    return {std::make_shared<const PointList>(std::move(points)), std::move(selection)};
}

// Puts points in order whose selected ones have been moved as one, so that those are in order among themselves, and
// finds the selection again.
LaneState Sorted(const LaneState& from, PointList points) {
    if (std::is_sorted(points.begin(), points.end(), Earlier))
        return WithPoints(from, std::move(points), from.selection);
    PointSelection others;
    others.reserve(points.size() - from.selection.size());
    auto chosen = from.selection.begin();
    for (std::uint32_t index = 0; index < points.size(); ++index) {
        if (chosen != from.selection.end() && *chosen == index) {
            ++chosen;
        } else {
            others.push_back(index);
        }
    }
    PointSelection order(points.size());
    // At one position they keep their order.
    std::merge(others.begin(), others.end(), from.selection.begin(), from.selection.end(), order.begin(),
               [&](std::uint32_t a, std::uint32_t b) {
                   return points[a].x != points[b].x ? points[a].x < points[b].x : a < b;
               });
    PointList sorted;
    sorted.reserve(points.size());
    PointSelection selection;
    chosen = from.selection.begin();
    for (const std::uint32_t index : order) {
        if (chosen != from.selection.end() && *chosen == index) {
            selection.push_back(static_cast<std::uint32_t>(sorted.size()));
            ++chosen;
        }
        sorted.push_back(points[index]);
    }
    return WithPoints(from, std::move(sorted), std::move(selection));
}

template <class Change>
LaneState ChangeSelected(const LaneState& from, const LaneLimits& limits, const Change& change) {
    PointList points = *from.points;
    for (const std::uint32_t index : from.selection) points[index] = limits.Repaired(change(points[index]));
    return Sorted(from, std::move(points));
}

// The selected points' own extent, widened to the limits where they lie beyond.
struct Box {
    float left, right, low, high;
};
Box BoxOf(const LaneState& state) {
    const Point& first = (*state.points)[state.selection.front()];
    Box box = {first.x, first.x, first.y, first.y};
    for (const std::uint32_t index : state.selection) {
        const Point& point = (*state.points)[index];
        box = {std::min(box.left, point.x), std::max(box.right, point.x), std::min(box.low, point.y),
               std::max(box.high, point.y)};
    }
    return box;
}

// A way that takes [low, high] no further than [least, most]; none where it lies beyond already.
float Limited(float way, float low, float high, float least, float most) noexcept {
    return std::clamp(way, std::min(0.0F, least - low), std::max(0.0F, most - high));
}

}  // namespace

Point LaneLimits::Repaired(Point point) const noexcept {
    float y = std::clamp(point.y, minimum, maximum);
    if (kind == ELaneKind::kSwitch) y = y - minimum < Range() / 2 ? minimum : maximum;
    if (kind == ELaneKind::kProgram) y = std::round(y);
    return {std::clamp(point.x, 0.0F, std::max(0.0F, end)), y};
}

bool IsStepped(ELaneKind kind) noexcept { return kind == ELaneKind::kSwitch || kind == ELaneKind::kProgram; }

// --- Selection --------------------------------------------------------------------------------------------

bool IsSelected(const LaneState& state, std::uint32_t point) noexcept {
    return std::binary_search(state.selection.begin(), state.selection.end(), point);
}

LaneState Select(const LaneState& from, PointSelection points) {
    std::sort(points.begin(), points.end());
    points.erase(std::unique(points.begin(), points.end()), points.end());
    std::erase_if(points, [&](std::uint32_t point) { return point >= from.points->size(); });
    return {from.points, std::move(points)};
}

LaneState ToggleSelected(const LaneState& from, std::uint32_t point) {
    PointSelection selection = from.selection;
    if (std::erase(selection, point) == 0) selection.push_back(point);
    return Select(from, std::move(selection));
}

LaneState SelectAll(const LaneState& from) {
    PointSelection all(from.points->size());
    std::iota(all.begin(), all.end(), 0U);
    return {from.points, std::move(all)};
}

PointSelection PointsWithin(const LaneState& state, Point corner, Point opposite) {
    const auto [left, right] = std::minmax(corner.x, opposite.x);
    const auto [low, high] = std::minmax(corner.y, opposite.y);
    PointSelection found;
    auto point = std::lower_bound(state.points->begin(), state.points->end(), Point{left, 0}, Earlier);
    for (; point != state.points->end() && point->x <= right; ++point) {
        if (point->y >= low && point->y <= high)
            found.push_back(static_cast<std::uint32_t>(point - state.points->begin()));
    }
    return found;
}

// --- Edits ------------------------------------------------------------------------------------------------

LaneState AddPoint(const LaneState& from, const LaneLimits& limits, Point point) {
    PointList points = *from.points;
    const Point repaired = limits.Repaired(point);
    const auto place = std::upper_bound(points.begin(), points.end(), repaired, Earlier);
    const auto index = static_cast<std::uint32_t>(place - points.begin());
    points.insert(place, repaired);
    return WithPoints(from, std::move(points), {index});
}

LaneState RemoveSelected(const LaneState& from) {
    PointList points;
    points.reserve(from.points->size());
    auto first = from.points->begin();
    for (const std::uint32_t index : from.selection) {
        points.insert(points.end(), first, from.points->begin() + index);
        first = from.points->begin() + index + 1;
    }
    points.insert(points.end(), first, from.points->end());
    return WithPoints(from, std::move(points), {});
}

LaneState MoveSelected(const LaneState& from, const LaneLimits& limits, float steps, float value) {
    if (from.selection.empty()) return from;
    const Box box = BoxOf(from);
    const float dx = Limited(steps, box.left, box.right, 0, limits.end);
    const float dy = Limited(value, box.low, box.high, limits.minimum, limits.maximum);
    if (dx == 0 && dy == 0) return from;
    PointList points = *from.points;
    for (const std::uint32_t index : from.selection) {
        Point& point = points[index];
        const Point moved = limits.Repaired({point.x + dx, point.y + dy});
        point = {dx == 0 ? point.x : moved.x, dy == 0 ? point.y : moved.y};
    }
    return Sorted(from, std::move(points));
}

LaneState SetValueOfSelected(const LaneState& from, const LaneLimits& limits, float value) {
    return ChangeSelected(from, limits, [value](const Point& point) { return Point{point.x, value}; });
}

LaneState MoveSelectedTo(const LaneState& from, const LaneLimits& limits, float position) {
    if (from.selection.empty()) return from;
    return MoveSelected(from, limits, position - (*from.points)[from.selection.front()].x, 0);
}

LaneState ReplaceSpan(const LaneState& from, const LaneLimits& limits, const PointList& shape, bool select) {
    if (shape.empty()) return from;
    const auto& old = *from.points;
    const float left = limits.Repaired(shape.front()).x;
    const float right = limits.Repaired(shape.back()).x;
    const auto first = std::lower_bound(old.begin(), old.end(), Point{left, 0}, Earlier);
    const auto last = std::upper_bound(old.begin(), old.end(), Point{right, 0}, Earlier);
    PointList points(old.begin(), first);
    const auto keep = [&](float edge, float inside) {
        const auto value = ValueAt(old, edge, limits.kind);
        if (value && *value != inside) points.push_back({edge, *value});
    };
    const bool hasCorner = first != old.end() && first->x == left;
    if (!hasCorner && !IsStepped(limits.kind)) keep(left, limits.Repaired(shape.front()).y);
    const auto begin = static_cast<std::uint32_t>(points.size());
    for (const Point& point : shape) points.push_back(limits.Repaired(point));
    const auto end = static_cast<std::uint32_t>(points.size());
    if (last != old.end()) keep(right, points.back().y);
    points.insert(points.end(), last, old.end());
    PointSelection selection(select ? end - begin : 0);
    std::iota(selection.begin(), selection.end(), begin);
    return WithPoints(from, std::move(points), std::move(selection));
}

// --- Clipboard --------------------------------------------------------------------------------------------

LaneClip CopySelected(const LaneState& state) {
    LaneClip clip;
    if (state.selection.empty()) return clip;
    clip.origin = (*state.points)[state.selection.front()].x;
    for (const std::uint32_t index : state.selection) {
        const Point& point = (*state.points)[index];
        clip.points.push_back({point.x - clip.origin, point.y});
    }
    return clip;
}

LaneState PastePoints(const LaneState& from, const LaneLimits& limits, const LaneClip& clip, float position) {
    PointList shape;
    for (const Point& point : clip.points) {
        const float x = std::max(0.0F, position) + point.x;
        if (x <= limits.end) shape.push_back({x, point.y});
    }
    return ReplaceSpan(from, limits, shape, true);
}

}  // namespace quib
