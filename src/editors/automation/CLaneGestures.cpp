// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CLaneGestures.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kStill = 3;          // pixels that a hand shakes
constexpr double kResistance = 6;  // pixels before a point passes its neighbour
constexpr float kFine = 0.125F;
constexpr float kLeastPeriod = 0.125F;  // steps
constexpr float kMostPeriod = 256;
constexpr float kNudge = 0.01F;  // of the range

PointSelection Union(PointSelection a, const PointSelection& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

}  // namespace

Point CLaneGestures::PlaceAt(int x, int y, bool free) const {
    const double step = std::max(0.0, view.StepAt(x));
    return view.limits.Repaired({free ? static_cast<float>(step) : view.time.SnapNearest(step), view.ValueAt(y)});
}

// --- Press ------------------------------------------------------------------------------------------------

void CLaneGestures::Press(int x, int y, bool right, const LaneHand& hand) {
    edit.Settle();
    pressX = x;
    pressY = y;
    moved = false;
    added = false;
    pressHand = hand;
    if (right || (hand.shift && !view.PointAt(edit.State(), x, y))) {
        mode = right ? EMode::kMenu : EMode::kMarquee;
        before = hand.control || hand.shift ? edit.State().selection : PointSelection();
        return;
    }
    const bool pencil = tool == ELaneTool::kPencil || (hand.control && !view.PointAt(edit.State(), x, y));
    if (tool == ELaneTool::kPoints && !pencil) return BeginPoint(x, y, hand);
    edit.Begin();
    if (pencil) {
        mode = EMode::kPencil;
        path.clear();
        const Point place = PlaceAt(x, y, true);
        path[place.x] = place.y;
        lastStep = place.x;
        return DrawPencil(x, y);
    }
    mode = EMode::kShape;
    stroke.from = PlaceAt(x, y, hand.alt);
    if (stroke.seed != seed) stroke.period = static_cast<float>(view.time.meter.StepsPerBeat());
    stroke.seed = ++seed;
    const auto tick = static_cast<float>(view.time.meter.StepsPerTick());
    stroke.tick = std::max(kLeastPeriod, tick);
}

void CLaneGestures::BeginPoint(int x, int y, const LaneHand& hand) {
    const auto point = view.PointAt(edit.State(), x, y);
    if (point && hand.control) {
        mode = EMode::kNone;
        return edit.Select(ToggleSelected(edit.State(), *point));
    }
    if (point && !IsSelected(edit.State(), *point)) edit.Select(quib::Select(edit.State(), {*point}));
    const auto segment = point ? std::nullopt : view.SegmentAt(edit.State(), x, y);
    edit.Begin();
    if (segment) {
        mode = EMode::kSegment;
        grabbed = *segment;
        return;
    }
    mode = EMode::kPoint;
    if (!point) {
        added = true;
        edit.Preview(AddPoint(edit.State(), view.limits, PlaceAt(x, y, hand.alt)));
    }
    grabbed = point ? *point : edit.State().selection.front();
}

// --- Move -------------------------------------------------------------------------------------------------

void CLaneGestures::Move(int x, int y, const LaneHand& hand) {
    if (mode == EMode::kNone) return;
    if (!moved && std::abs(x - pressX) < kStill && std::abs(y - pressY) < kStill) return;
    moved = true;
    const bool selects = mode == EMode::kMenu || mode == EMode::kMarquee;
    // The document has changed under the hand.
    if (!selects && !edit.IsOpen()) mode = EMode::kNone;
    switch (mode) {
        case EMode::kPoint:
            return MovePoint(x, y, hand);
        case EMode::kSegment: {
            const LaneState& start = edit.Start();
            const float way = static_cast<float>(pressY - y) * view.ValuePerPixel() * (hand.shift ? kFine : 1);
            const LaneState part = quib::Select(start, {grabbed, grabbed + 1});
            const LaneState next = MoveSelected(part, view.limits, 0, way);
            return edit.Preview({next.points, start.selection});
        }
        case EMode::kPencil:
            return DrawPencil(x, y);
        case EMode::kShape:
            return DrawShape(x, y, hand);
        case EMode::kMenu:
        case EMode::kMarquee:
            return Select(x, y);
        case EMode::kNone:
            return;
    }
}

// A point that is dragged alone holds on to its neighbours for a few pixels.
float CLaneGestures::Resisted(float position) const {
    const PointList& points = *edit.Start().points;
    if (edit.Start().selection.size() > 1) return position;
    const float own = added ? (*edit.State().points)[edit.State().selection.front()].x : points[grabbed].x;
    const auto resistance = static_cast<float>(kResistance / view.time.StepWidth());
    const std::size_t right = added ? grabbed : grabbed + 1;
    if (right < points.size() && position > points[right].x && points[right].x >= own &&
        position < points[right].x + resistance)
        return points[right].x;
    if (grabbed > 0 && position < points[grabbed - 1].x && points[grabbed - 1].x <= own &&
        position > points[grabbed - 1].x - resistance)
        return points[grabbed - 1].x;
    return position;
}

void CLaneGestures::MovePoint(int x, int y, const LaneHand& hand) {
    // A fresh point is put anew with each move.
    if (added) {
        Point place = PlaceAt(x, y, hand.alt);
        place.x = Resisted(place.x);
        return edit.Preview(AddPoint(edit.Start(), view.limits, place));
    }
    const LaneState& start = edit.Start();
    const Point& point = (*start.points)[grabbed];
    float steps = 0;
    if (std::abs(x - pressX) >= kStill) {
        const double wanted = static_cast<double>(point.x) + view.StepAt(x) - view.StepAt(pressX);
        const double limited = std::max(0.0, wanted);
        steps = Resisted(hand.alt ? static_cast<float>(limited) : view.time.SnapNearest(limited)) - point.x;
    }
    float way = static_cast<float>(pressY - y) * view.ValuePerPixel() * (hand.shift ? kFine : 1);
    if (std::abs(y - pressY) < kStill) way = 0;
    edit.Preview(MoveSelected(start, view.limits, steps, way));
}

// Going back draws over what the stroke has drawn.
void CLaneGestures::DrawPencil(int x, int y) {
    const Point place = PlaceAt(x, y, true);
    const auto [left, right] = std::minmax(place.x, lastStep);
    const auto first = place.x >= lastStep ? path.upper_bound(left) : path.lower_bound(left);
    const auto last = place.x >= lastStep ? path.upper_bound(right) : path.lower_bound(right);
    path.erase(first, last);
    path[place.x] = place.y;
    lastStep = place.x;
    PointList drawn;
    for (const auto& [step, value] : path) drawn.push_back({step, value});
    const float tolerance = kRecordingTolerance * view.limits.Range();
    edit.Preview(ReplaceSpan(edit.Start(), view.limits, Thinned(drawn, view.limits, tolerance), false));
}

void CLaneGestures::DrawShape(int x, int y, const LaneHand& hand) {
    stroke.to = PlaceAt(x, y, hand.alt);
    constexpr std::array kShapes = {ELaneShape::kLine, ELaneShape::kRamp, ELaneShape::kSine, ELaneShape::kRandom};
    const auto shape = kShapes[static_cast<std::size_t>(tool) - static_cast<std::size_t>(ELaneTool::kLine)];
    edit.Preview(ReplaceSpan(edit.Start(), view.limits, MakeShape(shape, stroke), false));
}

void CLaneGestures::Select(int x, int y) {
    marquee = {{static_cast<float>(view.StepAt(pressX)), view.ValueAt(pressY)},
               {static_cast<float>(view.StepAt(x)), view.ValueAt(y)}};
    const PointSelection touched = PointsWithin(edit.State(), marquee->corner, marquee->opposite);
    edit.Select(quib::Select(edit.State(), Union(before, touched)));
}

// --- Ends -------------------------------------------------------------------------------------------------

void CLaneGestures::Release(int x, int y) {
    const EMode done = std::exchange(mode, EMode::kNone);
    if (std::exchange(marquee, std::nullopt)) edit.Select(edit.State());
    switch (done) {
        case EMode::kMenu:
            if (!moved && onMenu) onMenu();
            return;
        case EMode::kMarquee:
            if (!moved) edit.Select(quib::Select(edit.State(), {}));
            return;
        case EMode::kSegment:
            // A click on the line is a point on it.
            if (!moved) edit.Preview(AddPoint(edit.State(), view.limits, PlaceAt(x, y, pressHand.alt)));
            if (!moved) return edit.FinishLater(TextKey("Add point"));
            return edit.Finish(TextKey("Move points"));
        case EMode::kPoint:
            if (added && !moved) return edit.FinishLater(TextKey("Add point"));
            return edit.Finish(added ? TextKey("Add point") : TextKey("Move points"));
        case EMode::kPencil:
        case EMode::kShape:
            return edit.Finish(TextKey("Draw automation"));
        case EMode::kNone:
            return;
    }
}

// The second press of one on empty space meets the point that the first one made: both leave nothing.
void CLaneGestures::DoubleClick(int x, int y) {
    mode = EMode::kNone;
    if (edit.IsPending()) return edit.Cancel();
    const auto point = view.PointAt(edit.State(), x, y);
    if (point && tool == ELaneTool::kPoints)
        edit.Apply(RemoveSelected(quib::Select(edit.State(), {*point})), TextKey("Delete points"));
}

bool CLaneGestures::Cancel() {
    marquee.reset();
    if (std::exchange(mode, EMode::kNone) != EMode::kNone) {
        edit.Cancel();
        return true;
    }
    edit.Settle();
    const bool selected = !edit.State().selection.empty();
    edit.Select(quib::Select(edit.State(), {}));
    return selected;
}

void CLaneGestures::Wheel(int x, int y, float notches) {
    if (mode == EMode::kShape) {
        stroke.period = std::clamp(notches > 0 ? stroke.period / 2 : stroke.period * 2, kLeastPeriod, kMostPeriod);
        return DrawShape(x, y, pressHand);
    }
    if (mode != EMode::kNone) return;
    edit.Settle();
    const auto point = view.PointAt(edit.State(), x, y);
    LaneState meant = edit.State();
    if (point && !IsSelected(meant, *point)) meant = quib::Select(meant, {*point});
    if (meant.selection.empty()) return;
    const bool whole = IsStepped(view.limits.kind);
    const float step = whole ? 1 : view.limits.Range() * kNudge;
    edit.Apply(MoveSelected(meant, view.limits, 0, notches * step), TextKey("Move points"));
}

void CLaneGestures::Nudge(int steps, int values, bool fine) {
    if (IsBusy() || edit.State().selection.empty()) return;
    edit.Settle();
    const double snap = view.time.SnapSteps();
    const double tick = std::max(view.time.meter.StepsPerTick(), 1.0 / 64);
    const auto way = static_cast<float>(fine || snap <= 0 ? tick : snap);
    const float range = IsStepped(view.limits.kind) ? 1 : view.limits.Range() * kNudge * (fine ? kFine : 1);
    edit.Apply(
        MoveSelected(edit.State(), view.limits, static_cast<float>(steps) * way, static_cast<float>(values) * range),
        TextKey("Move points"));
}

void CLaneGestures::Delete() {
    edit.Settle();
    if (!edit.State().selection.empty()) edit.Apply(RemoveSelected(edit.State()), TextKey("Delete points"));
}

}  // namespace quib
