// SPDX-License-Identifier: GPL-3.0-or-later
// How the curve of a lane is drawn.
#include <algorithm>
#include <array>
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

// Values with a line of their own on the scale of a filter, as hertz.
constexpr std::array kHertz = {20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 16000};

QString HertzText(int hertz, bool withUnit) {
    if (hertz < 1000) return QString::number(hertz) + QLatin1String(withUnit ? " Hz" : "");
    return QString::number(hertz / 1000) + QLatin1String(withUnit ? " kHz" : "k");
}

}  // namespace

// --- Drawing ----------------------------------------------------------------------------------------------

void CEventCtrl::Paint(const QRect& part) {
    const QRect curve = part.intersected(QRect(view.scaleWidth, 0, std::max(0, Width() - view.scaleWidth), Height()));
    if (part.left() < view.scaleWidth) PaintScale();
    if (curve.isEmpty()) return;
    Canvas().SetClip(OnCanvas(curve));
    PaintGround(curve);
    if (lane) {
        PaintRest();
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

// What lies below the points, and those that are many.
void CEventCtrl::PaintGround(const QRect& part) {
    const double scale = Canvas().Scale();
    const auto pixel = [scale](double place) { return static_cast<int>(std::lround(place * scale)); };
    const QPoint corner(pixel(X() + part.left()), pixel(Y() + part.top()));
    const QRect area(corner, QPoint(pixel(X() + part.right() + 1) - 1, pixel(Y() + part.bottom() + 1) - 1));
    if (area.isEmpty()) return;
    std::vector<QRgb> ground(static_cast<std::size_t>(area.width()), Colour("gridOff"));
    const std::array<QRgb, 3> colours = {Colour("gridStep"), Colour("gridBeat"), Colour("gridBar")};
    for (const GridLine& entry : view.time.Lines(view.StepAt(part.left() - 1), view.StepAt(part.right() + 1))) {
        const double place = X() + view.XOf(entry.step);
        const int from = std::clamp(pixel(place) - area.left(), 0, area.width());
        const int to = std::clamp(pixel(place + 1) - area.left(), from, area.width());
        std::fill(ground.begin() + from, ground.begin() + to, colours[static_cast<std::size_t>(entry.kind)]);
    }
    std::vector<QRect> marks = NoteAreas(part, area);
    const QRgb mark = Mix(Colour("gridOff"), Colour("ghost"), 0.75F);
    const QRgb valueLine = Colour("gridBeat");
    const std::size_t noteCount = marks.size();
    for (const float scaleValue : ScaleValues()) {
        const int top = pixel(Y() + std::floor(view.YOf(scaleValue))) - area.top();
        marks.emplace_back(0, top, area.width(), std::max(1, pixel(1)));
    }
    PrepareLines(part, area);
    FindCrowd(part, area);
    Canvas().DrawTiles(area, [&](const PixelTile& tile) {
        const auto left = static_cast<std::size_t>(tile.area.left());
        for (int row = tile.area.top(); row <= tile.area.bottom(); ++row)
            std::copy_n(ground.data() + left, tile.area.width(), tile.Row(row));
        // The lines of the values first, then the notes upon them.
        for (std::size_t step = 0; step < marks.size(); ++step) {
            const std::size_t index = (step + noteCount) % marks.size();
            const QRect place = marks[index].intersected(tile.area);
            for (int row = place.top(); row <= place.bottom(); ++row)
                std::fill_n(tile.Row(row) + (place.left() - tile.area.left()), place.width(),
                            index < noteCount ? mark : valueLine);
        }
        if (showsBefore) lineBefore.Draw(tile);
        if (lane) lineNow.Draw(tile);
        crowd.Draw(tile);
    });
}

// The notes behind the curve, in pixels from the corner of the area.
std::vector<QRect> CEventCtrl::NoteAreas(const QRect& part, const QRect& area) const {
    std::vector<QRect> areas;
    if (!notes) return areas;
    const double scale = Canvas().Scale();
    const double room = Height() - view.headerHeight - 8;
    notes->VisitRange(
        static_cast<float>(view.StepAt(part.left())), static_cast<float>(view.StepAt(part.right() + 1)), 0,
        [&](std::uint32_t, const Note& note) {
            const double share =
                1.0 - std::clamp(static_cast<double>(note.key - kNotesLow) / (kNotesHigh - kNotesLow), 0.0, 1.0);
            const double left = (X() + view.XOf(static_cast<double>(note.position))) * scale - area.left();
            const double wide = static_cast<double>(note.length) * view.time.StepWidth() - 1;
            const double top = (Y() + std::floor(view.headerHeight + share * room)) * scale - area.top();
            areas.emplace_back(static_cast<int>(std::lround(left)), static_cast<int>(std::lround(top)),
                               static_cast<int>(std::lround(std::max(2.0, wide) * scale)),
                               static_cast<int>(std::lround(7 * scale)));
        });
    return areas;
}

// Where a hand changes the line, what it was is seen too, unless so much moves that it would only be in the way.
void CEventCtrl::PrepareLines(const QRect& part, const QRect& area) {
    showsBefore = false;
    if (!lane) return;
    const QPoint origin(X(), Y());
    const LaneState& state = edit.State();
    lineNow.Find(view, Canvas().Scale(), origin, area, *state.points, {Accent(), 2, true, false});
    const bool isChanging = gestures.IsBusy() && edit.IsOpen() && !InSight(part).many;
    const auto span = isChanging ? DifferingSpan(*edit.Start().points, *state.points) : std::nullopt;
    showsBefore = span && PartOf(*span).intersects(part);
    if (showsBefore)
        lineBefore.Find(view, Canvas().Scale(), origin, area, *edit.Start().points,
                        {Mix(Colour("gridOff"), Colour("textDim"), 0.6F), 1, false, true});
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
        const QString text = isFilter ? HertzText(kHertz[index], strong || index == 0 || index + 1 == values.size())
                                      : catalog.ValueText(*lane, values[index]);
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

// Where there is no line: nothing is played before the first point, there the knob stays where it is.
void CEventCtrl::PaintRest() {
    const PointList& points = *edit.State().points;
    if (points.empty()) {
        const QString hint = Text("Click to add a point, or arm and move the knob.");
        return Canvas().Text(
            Shape(view.scaleWidth, view.headerHeight, Width() - view.scaleWidth, Height() - view.headerHeight), hint,
            Colour("textDim"), 11);
    }
    const double first = view.XOf(static_cast<double>(points.front().x));
    const auto now = first > view.scaleWidth && valueNow ? valueNow() : std::nullopt;
    if (!now) return;
    const QRgb accent = Accent();
    for (double dot = view.scaleWidth; dot < std::min<double>(first, Width()); dot += 6)
        Canvas().Fill(Shape(dot, std::floor(view.YOf(*now)), 2, 1), accent);
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
