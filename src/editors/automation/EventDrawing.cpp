// SPDX-License-Identifier: GPL-3.0-or-later
// How the curve of a lane is drawn.
#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "editors/automation/CEventCtrl.h"
#include "model/edits/LaneCurve.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kNotesLow = 24;  // keys that the notes behind are spread over
constexpr int kNotesHigh = 96;
constexpr double kNear = 8;          // pixels: points closer than that are small squares
constexpr double kPointsAPixel = 2;  // more are drawn as columns

// Values with a line of their own on the scale of a filter, as hertz.
constexpr std::array kHertz = {20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 16000};

}  // namespace

// --- Drawing ----------------------------------------------------------------------------------------------

void CEventCtrl::Paint(const QRect& part) {
    const QRect curve = part.intersected(QRect(view.scaleWidth, 0, std::max(0, Width() - view.scaleWidth), Height()));
    if (part.left() < view.scaleWidth) PaintScale();
    if (curve.isEmpty()) return;
    Canvas().SetClip(OnCanvas(curve));
    PaintGrid(curve);
    PaintNotes(curve);
    if (lane) {
        PaintCurve(curve);
        PaintPoints(curve);
    }
    if (patternEnd > 0) {
        const double end = view.XOf(patternEnd);
        Canvas().Fill(Shape(end, view.headerHeight, std::max(0.0, Width() - end), Height()),
                      WithOpacity(Colour("ink"), 0.5F));
        Canvas().Fill(Shape(end, view.headerHeight, 2, Height()), Colour("pattern"));
    }
    PaintMarquee();
    PaintHeader(curve);
    PaintPlayhead();
    Canvas().SetClip(OnCanvas(part));
}

std::vector<float> CEventCtrl::ScaleValues() const {
    std::vector<float> values;
    if (!lane) return values;
    const LaneDescription& range = lane->description;
    if (range.kind >= ELaneKind::kLowPassFrequency && range.kind <= ELaneKind::kHighPassFrequency) {
        for (const int hertz : kHertz) values.push_back(std::log(static_cast<float>(hertz) / 20) / std::log(800.0F));
    } else if (range.kind == ELaneKind::kSwitch) {
        values = {range.minimum, range.maximum};
    } else {
        for (int step = 0; step <= 4; ++step)
            values.push_back(range.minimum + (range.maximum - range.minimum) * static_cast<float>(step) / 4);
    }
    return values;
}

void CEventCtrl::PaintGrid(const QRect& part) {
    Canvas().Fill(Shape(view.scaleWidth, view.headerHeight, Width() - view.scaleWidth, Height() - view.headerHeight),
                  Colour("gridOff"));
    for (const GridLine& line : view.time.Lines(view.StepAt(part.left() - 1), view.StepAt(part.right() + 1))) {
        const char* const colour = line.kind == ELine::kBar    ? "gridBar"
                                   : line.kind == ELine::kBeat ? "gridBeat"
                                                               : "gridStep";
        Canvas().Fill(Shape(view.XOf(line.step), view.headerHeight, 1, Height() - view.headerHeight), Colour(colour));
    }
    for (const float line : ScaleValues()) {
        Canvas().Fill(Shape(view.scaleWidth, std::floor(view.YOf(line)), Width() - view.scaleWidth, 1),
                      Colour("gridBeat"));
    }
}

void CEventCtrl::PaintScale() {
    Canvas().Fill(Shape(0, 0, view.scaleWidth, Height()), Colour("panel"));
    Canvas().Fill(Shape(0, view.headerHeight - 1, view.scaleWidth, 1), Colour("wellDeep"));
    if (!lane) return;
    const std::vector<float> values = ScaleValues();
    const bool isFilter = lane->description.kind >= ELaneKind::kLowPassFrequency &&
                          lane->description.kind <= ELaneKind::kHighPassFrequency;
    for (std::size_t index = 0; index < values.size(); ++index) {
        const bool decade = isFilter && (index == 2 || index == 5 || index == 8);
        const bool middle = !isFilter && lane->description.minimum < 0 && index == 2;
        const bool strong = decade || middle;
        const QString text = catalog.ValueText(*lane, values[index]);
        // A low curve has room for every other one.
        if (view.YOf(values[0]) - view.YOf(values.back()) < 14.0 * static_cast<double>(values.size() - 1) &&
            index % 2 != 0)
            continue;
        Canvas().Text(Shape(0, view.YOf(values[index]) - 7, view.scaleWidth - 6, 14), text,
                      Colour(strong ? "text" : "textMuted"), 10, Qt::AlignRight | Qt::AlignVCenter, strong);
    }
}

void CEventCtrl::PaintHeader(const QRect& part) {
    if (view.headerHeight <= 0) return;
    Canvas().Fill(Shape(view.scaleWidth, 0, Width() - view.scaleWidth, view.headerHeight), Colour("panel"));
    Canvas().Fill(Shape(view.scaleWidth, view.headerHeight - 1, Width() - view.scaleWidth, 1), Colour("wellDeep"));
    const Meter& meter = view.time.meter;
    const double barWidth = meter.StepsPerBar() * view.time.StepWidth();
    int everyBar = 1;
    while (barWidth * everyBar < 30) everyBar *= 2;
    const bool beats = meter.StepsPerBeat() * view.time.StepWidth() >= 36;
    for (const GridLine& line :
         view.time.Lines(std::max(0.0, view.StepAt(part.left() - 40)), view.StepAt(part.right() + 1))) {
        const double left = view.XOf(line.step);
        const int bar = static_cast<int>(line.step / meter.StepsPerBar());
        if (line.kind == ELine::kBar && bar % everyBar == 0) {
            Canvas().Fill(Shape(left, 2, 1, view.headerHeight - 3), Colour("gridBar"));
            Canvas().Text(Shape(left + 5, 1, 40, 20), QString::number(bar + 1), Colour("text"), 13,
                          Qt::AlignLeft | Qt::AlignVCenter, true);
        } else if (line.kind == ELine::kBeat && beats) {
            const int beat = static_cast<int>((line.step - bar * meter.StepsPerBar()) / meter.StepsPerBeat());
            Canvas().Fill(Shape(left, 12, 1, view.headerHeight - 13), Colour("gridBeat"));
            Canvas().Text(Shape(left + 4, 2, 40, 20), QStringLiteral("%1.%2").arg(bar + 1).arg(beat + 1),
                          Colour("textMuted"), 10, Qt::AlignLeft | Qt::AlignVCenter);
        }
    }
    if (patternEnd <= 0) return;
    Canvas().Fill(
        Shape(view.scaleWidth, view.headerHeight - 3, std::max(0.0, view.XOf(patternEnd) - view.scaleWidth), 2),
        Mix(Colour("pattern"), Colour("ink"), 0.35F));
}

void CEventCtrl::PaintNotes(const QRect& part) {
    if (!notes) return;
    const double room = Height() - view.headerHeight - 8;
    notes->VisitRange(
        static_cast<float>(view.StepAt(part.left())), static_cast<float>(view.StepAt(part.right() + 1)), 0,
        [&](std::uint32_t, const Note& note) {
            const double share =
                1.0 - std::clamp(static_cast<double>(note.key - kNotesLow) / (kNotesHigh - kNotesLow), 0.0, 1.0);
            const double left = view.XOf(static_cast<double>(note.position));
            const double wide = static_cast<double>(note.length) * view.time.StepWidth();
            Canvas().Fill(Shape(left, std::floor(view.headerHeight + share * room), std::max(2.0, wide - 1), 7),
                          WithOpacity(Colour("ghost"), 0.75F));
        });
}

bool CEventCtrl::IsDense(const QRect& part) const {
    const std::size_t count = PointCount(*edit.State().points, static_cast<float>(view.StepAt(part.left())),
                                         static_cast<float>(view.StepAt(part.right() + 1)));
    return static_cast<double>(count) > kPointsAPixel * std::max(part.width(), 8);
}

void CEventCtrl::PaintLine(const PointList& corners, QRgb colour) {
    std::vector<QPointF> line;
    line.reserve(corners.size());
    for (const Point& corner : corners) line.push_back(PlaceOf(corner));
    Canvas().Polyline(line, colour, 2);
}

void CEventCtrl::PaintCurve(const QRect& part) {
    const PointList& points = *edit.State().points;
    if (points.empty()) {
        const QString hint = Text("Click to add a point, or arm and move the knob.");
        return Canvas().Text(
            Shape(view.scaleWidth, view.headerHeight, Width() - view.scaleWidth, Height() - view.headerHeight), hint,
            Colour("textDim"), 11);
    }
    // Nothing is played before the first point: there the knob stays where it is.
    const double first = view.XOf(static_cast<double>(points.front().x));
    if (const auto now = valueNow ? valueNow() : std::nullopt; now && first > view.scaleWidth) {
        for (double dot = view.scaleWidth; dot < first; dot += 6) {
            Canvas().Fill(Shape(dot, std::floor(view.YOf(*now)), 2, 1), Accent());
        }
    }
    if (IsDense(part)) return PaintColumns(part);
    const auto from = static_cast<float>(view.StepAt(part.left() - 4));
    const auto to = static_cast<float>(view.StepAt(part.right() + 5));
    if (gestures.IsBusy() && edit.IsOpen() && edit.Start().points != edit.State().points) {
        PointList old = CurveCorners(*edit.Start().points, from, to, view.limits.kind);
        std::vector<QPointF> dash;
        for (const Point& corner : old) dash.push_back(PlaceOf(corner));
        Canvas().Polyline(dash, WithOpacity(Colour("textDim"), 0.6F), 1);
    }
    const PointList corners = CurveCorners(points, from, to, view.limits.kind);
    if (corners.size() < 2) return;
    std::vector<QPointF> area;
    for (const Point& corner : corners) area.push_back(PlaceOf(corner));
    area.emplace_back(area.back().x(), Y() + Height());
    area.emplace_back(area.front().x(), Y() + Height());
    Canvas().Polygon(area, WithOpacity(Accent(), 0.12F));
    PaintLine(corners, Accent());
}

void CEventCtrl::PaintColumns(const QRect& part) {
    const double scale = Canvas().Scale();
    const int count = static_cast<int>(std::ceil(part.width() * scale));
    const double left = part.left();
    const std::vector<CurveColumn> columns = CurveColumns(*edit.State().points, view.StepAt(left),
                                                          1 / (scale * view.time.StepWidth()), count, view.limits.kind);
    for (int index = 0; index < count; ++index) {
        const CurveColumn& column = columns[static_cast<std::size_t>(index)];
        if (!column.played) continue;
        const double top = view.YOf(column.high);
        const double foot = std::max(view.YOf(column.low), top + 2);
        const double place = left + index / scale;
        Canvas().Fill(Shape(place, foot, 1 / scale, Height() - foot), WithOpacity(Accent(), 0.12F));
        Canvas().Fill(Shape(place, top, 1 / scale, foot - top), Accent());
    }
}

void CEventCtrl::PaintPoints(const QRect& part) {
    const LaneState& state = edit.State();
    if (IsDense(part)) return;
    const auto from = static_cast<float>(view.StepAt(part.left() - 8));
    const auto to = static_cast<float>(view.StepAt(part.right() + 9));
    const auto begin = std::lower_bound(state.points->begin(), state.points->end(), from,
                                        [](const Point& point, float step) { return point.x < step; });
    for (auto point = begin; point != state.points->end() && point->x <= to; ++point) {
        const auto index = static_cast<std::uint32_t>(point - state.points->begin());
        const bool chosen = IsSelected(state, index);
        const QPointF place = PlaceOf(*point);
        const auto isNear = [&](const Point& other) {
            const QPointF way = PlaceOf(other) - place;
            return std::hypot(way.x(), way.y()) < kNear;
        };
        const bool crowded = (point != state.points->begin() && isNear(*(point - 1))) ||
                             (point + 1 != state.points->end() && isNear(*(point + 1)));
        if (crowded && !chosen && hovered != index) {
            Canvas().Fill(QRectF(place.x() - 1.5, place.y() - 1.5, 3, 3), Accent());
            continue;
        }
        const bool large = chosen || hovered == index;
        Canvas().Ellipse(place, large ? 6 : 5, Accent());
        Canvas().Ellipse(place, large ? 4.5 : 3, chosen ? Colour("thumbHover") : Colour("gridOff"));
    }
}

void CEventCtrl::PaintMarquee() {
    const auto& marquee = gestures.Selecting();
    if (!marquee) return;
    const QRectF area = QRectF(PlaceOf(marquee->corner), PlaceOf(marquee->opposite)).normalized();
    Canvas().Fill(area, WithOpacity(Colour("thumbHover"), 0.08F));
    Canvas().Frame(area, 0, Colour("text"));
}

void CEventCtrl::PaintPlayhead() {
    const double place = view.XOf(playhead);
    if (playhead < 0 || place < view.scaleWidth) return;
    Canvas().Fill(Shape(place - 1, 0, 2, Height()), Colour("transport"));
    if (view.headerHeight <= 0) return;
    const QPointF top(X() + place, Y() + 1);
    const std::array<QPointF, 5> flag = {top + QPointF(-6, 0), top + QPointF(6, 0), top + QPointF(6, 5),
                                         top + QPointF(0, 10), top + QPointF(-6, 5)};
    Canvas().Polygon(flag, Colour("transport"));
}

}  // namespace quib
