// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/drawing/HeaderPainter.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "controls/CPalette.h"

namespace quib {

namespace {

constexpr int kHeight = PianoRollView::kHeaderHeight;
constexpr int kFoot = kHeight - 1;  // of the dark line that ends the header
constexpr int kBarTop = 2;          // of a bar's line
constexpr int kBeatTop = 12;
constexpr int kStepTop = kFoot - 5;
constexpr int kLengthBar = 3;  // pixels at the foot, the dark line among them
constexpr int kFlag = 10;
constexpr int kWidestLabel = 40;  // pixels

// Beats of a bar that have a label, so that labels do not meet: every one, every second, none.
int LabelledBeats(const RollDrawing& drawing) {
    const double beat = drawing.view.time.meter.StepsPerBeat() * drawing.view.time.StepWidth();
    return beat >= 36 ? 1 : 0;
}

int LabelledBars(const RollDrawing& drawing) {
    const double bar = drawing.view.time.meter.StepsPerBar() * drawing.view.time.StepWidth();
    int every = 1;
    while (bar * every < 30) every *= 2;
    return every;
}

void DrawLine(const RollDrawing& drawing, const GridLine& line, bool isBeyond) {
    const RollColours& colours = drawing.colours;
    const double x = drawing.view.XOf(line.step);
    const Meter& meter = drawing.view.time.meter;
    const int bar = static_cast<int>(line.step / meter.StepsPerBar());
    if (line.kind == ELine::kStep) return drawing.Fill(x, kStepTop, 1, kFoot - kStepTop, colours.gridBeat);
    if (line.kind == ELine::kBar) {
        if (bar % LabelledBars(drawing) != 0) return drawing.Fill(x, kBeatTop, 1, kFoot - kBeatTop, colours.gridBeat);
        if (!isBeyond) drawing.Fill(x, kBarTop, 1, kFoot - kBarTop, colours.gridBar);
        return drawing.TextFrom(x + 5, 1, 20, QString::number(bar + 1), isBeyond ? colours.textMuted : colours.text, 13,
                                true);
    }
    drawing.Fill(x, kBeatTop, 1, kFoot - kBeatTop, colours.gridBeat);
    const int beat = static_cast<int>((line.step - bar * meter.StepsPerBar()) / meter.StepsPerBeat());
    if (LabelledBeats(drawing) == 0) return;
    drawing.TextFrom(x + 4, 2, 20, QStringLiteral("%1.%2").arg(bar + 1).arg(beat + 1), colours.textMuted, 10, false);
}

}  // namespace

void DrawHeader(const RollDrawing& drawing, const QString& lengthText) {
    const RollColours& colours = drawing.colours;
    const PianoRollView& view = drawing.view;
    const int left = view.GridLeft();
    const double end = std::clamp(drawing.EndX(), static_cast<double>(left), static_cast<double>(view.Width()));
    drawing.Fill(left, 0, end - left, kFoot, colours.panel);
    drawing.Fill(end, 0, view.Width() - end, kFoot, colours.wellDeep);
    drawing.Fill(0, kFoot, view.Width(), 1, colours.wellDeep);
    const double from = view.StepAt(drawing.part.left() - kWidestLabel);
    for (const GridLine& line : view.time.Lines(from, view.StepAt(drawing.part.right() + 1))) {
        if (view.XOf(line.step) >= left) DrawLine(drawing, line, line.step >= drawing.stepCount);
    }
    const QRgb length = Mix(colours.pattern, Palette().Colour(QStringLiteral("shade")), 0.35F);
    drawing.Fill(left, kHeight - kLengthBar, end - left, kLengthBar - 1, length);
    // Labels of what is scrolled away lie below this.
    drawing.Fill(0, 0, left, kFoot, colours.panel);
    drawing.TextFrom(8, 0, 13, lengthText, colours.pattern, 11, true);
    const Meter& meter = view.time.meter;
    drawing.TextFrom(8, 12, 11, QStringLiteral("%1/%2").arg(meter.beatsPerBar).arg(meter.beatUnit), colours.textMuted,
                     9, false);
}

void DrawPatternEnd(const RollDrawing& drawing, double top, double bottom) {
    const double x = drawing.EndX();
    if (x < drawing.view.GridLeft() || !drawing.Touches(x - kFlag, x + 2)) return;
    drawing.Fill(x, top, 2, bottom - top, drawing.colours.pattern);
    if (top >= kHeight) return;
    const QPointF corner(drawing.origin.x() + x + 2, drawing.origin.y() + 1);
    const std::array<QPointF, 3> flag = {corner - QPointF(kFlag, 0), corner, corner + QPointF(0, kFlag)};
    drawing.canvas.Polygon(flag, drawing.colours.pattern);
}

}  // namespace quib
