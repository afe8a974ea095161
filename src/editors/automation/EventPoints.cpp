// SPDX-License-Identifier: GPL-3.0-or-later
// How the points of a curve are drawn.
#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "editors/automation/CEventCtrl.h"

namespace quib {

namespace {

constexpr double kNear = 8;     // pixels: points closer than that are small squares
constexpr double kCrowd = 4;    // pixels a point: with less only those that are meant are seen
constexpr int kMostDiscs = 64;  // of points that are selected in a crowd
constexpr double kCovered = 1;  // pixels from the point before
constexpr double kSquare = 3;   // pixels, of a point that has no room for more

}  // namespace

void CEventCtrl::PaintPoint(std::uint32_t index, bool chosen, QRgb accent) {
    const PointList& points = *edit.State().points;
    const QPointF place = PlaceOf(points[index]);
    const auto isNear = [&](std::size_t other) {
        if (other >= points.size()) return false;
        const QPointF way = PlaceOf(points[other]) - place;
        return std::hypot(way.x(), way.y()) < kNear;
    };
    const bool large = chosen || hovered == index;
    if (!large && (isNear(std::size_t{index} - 1) || isNear(std::size_t{index} + 1)))
        return Canvas().Fill(QRectF(place.x() - kSquare / 2, place.y() - kSquare / 2, kSquare, kSquare), accent);
    Canvas().Ellipse(place, large ? 6 : 5, accent);
    Canvas().Ellipse(place, large ? 4.5 : 3, Colour(chosen ? "thumbHover" : "gridOff"));
}

CEventCtrl::PointsInSight CEventCtrl::InSight(const QRect& part) const {
    const LaneState& state = edit.State();
    const PointList& points = *state.points;
    const auto from = static_cast<float>(view.StepAt(part.left() - 8));
    const auto to = static_cast<float>(view.StepAt(part.right() + 9));
    const auto index = [&](float step) {
        return static_cast<std::uint32_t>(
            std::lower_bound(points.begin(), points.end(), step,
                             [](const Point& point, float wanted) { return point.x < wanted; }) -
            points.begin());
    };
    PointsInSight sight;
    sight.first = index(from);
    sight.to = to;
    sight.chosen = std::lower_bound(state.selection.begin(), state.selection.end(), sight.first);
    sight.crowded = static_cast<double>(PointCount(points, from, to)) * kCrowd > part.width() + 16;
    const auto chosenEnd = std::upper_bound(sight.chosen, state.selection.end(), index(to));
    sight.many = sight.crowded && chosenEnd - sight.chosen > kMostDiscs;
    return sight;
}

template <class Visit>
void CEventCtrl::VisitPoints(const PointsInSight& sight, const Visit& paint) const {
    const LaneState& state = edit.State();
    const PointList& points = *state.points;
    auto chosen = sight.chosen;
    QPointF last(-1e6, 0);
    for (std::uint32_t point = sight.first; point < points.size() && points[point].x <= sight.to; ++point) {
        const bool isChosen = chosen != state.selection.end() && *chosen == point;
        if (isChosen) ++chosen;
        if (sight.crowded && !isChosen && hovered != point) continue;
        const QPointF place = PlaceOf(points[point]);
        // A hidden one costs nothing.
        if ((place - last).manhattanLength() < kCovered) continue;
        last = place;
        paint(point, place, isChosen);
    }
}

// So many that each of them alone would take too long.
void CEventCtrl::FindCrowd(const QRect& part, const QRect& area) {
    const double scale = Canvas().Scale();
    const auto pixel = [scale](double place) { return static_cast<int>(place * scale + std::copysign(0.5, place)); };
    crowd.Begin(area.size(), pixel(kSquare), Colour("thumbHover"));
    const PointsInSight sight = InSight(part);
    if (!lane || !sight.many) return;
    VisitPoints(sight, [&](std::uint32_t, const QPointF& place, bool) {
        crowd.Add(QPoint(pixel(place.x() - kSquare / 2), pixel(place.y() - kSquare / 2)) - area.topLeft());
    });
}

void CEventCtrl::PaintPoints(const QRect& part) {
    const PointsInSight sight = InSight(part);
    if (sight.many) return;
    const QRgb accent = Accent();
    VisitPoints(sight,
                [&](std::uint32_t point, const QPointF&, bool isChosen) { PaintPoint(point, isChosen, accent); });
}

}  // namespace quib
