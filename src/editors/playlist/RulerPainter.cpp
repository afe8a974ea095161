// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/RulerPainter.h"

#include <cmath>

namespace quib {

namespace {

constexpr int kBrace = 14;
constexpr int kBraceEnd = 4;
constexpr int kRoomOfLabel = 34;  // pixels from bar to bar that a number wants

void DrawBars(const SongDrawing& drawing, int top) {
    const CTimeGrid& time = drawing.view.time;
    const double bar = time.meter.StepsPerBar();
    int every = 1;
    while (bar * time.StepWidth() * every < kRoomOfLabel) every *= 2;
    const auto first = static_cast<int>(std::max(0.0, std::floor(time.StepAt(drawing.part.left() - 60) / bar)));
    for (int number = first; time.XOf(number * bar) <= drawing.part.right(); ++number) {
        const double x = time.XOf(number * bar);
        const bool labelled = number % every == 0;
        drawing.Fill(x, labelled ? top + 2 : drawing.height - 7, 1, drawing.height, drawing.colours.laneBar);
        if (!labelled) continue;
        drawing.TextFrom(x + 5, top, drawing.height - top - 2, QString::number(number + 1), drawing.colours.textMuted,
                         11, false);
    }
}

void DrawMarkers(const SongDrawing& drawing, int top) {
    const CTimeGrid& time = drawing.view.time;
    const SongColours& colours = drawing.colours;
    for (const SongMarker& marker : drawing.view.markers) {
        const double x = time.XOf(marker.step);
        if (x > drawing.part.right()) break;
        const QString number = QString::number(static_cast<int>(marker.step / time.meter.StepsPerBar()) + 1);
        const QString name = QString::fromStdString(marker.name);
        const double first = drawing.masks.Text(number, 11, true).width;
        const double room = first + drawing.masks.Text(name, 11, true).width + 16;
        drawing.Fill(x, top + 1, room, drawing.height - top - 3, Mix(colours.panel, colours.pattern, 0.18F));
        drawing.Fill(x, top + 1, 1, drawing.height - top - 2, colours.pattern);
        const int line = drawing.height - top - 2;
        drawing.TextFrom(x + 5, top, line, number, colours.text, 11, true);
        drawing.TextFrom(x + 10 + first, top, line, name, colours.pattern, 11, true);
    }
}

void DrawBrace(const SongDrawing& drawing, int band) {
    const StepRange loop = drawing.view.loop;
    const double left = drawing.view.time.XOf(loop.first);
    const double right = drawing.view.time.XOf(loop.end);
    const QRgb full = drawing.view.loopOn ? drawing.colours.transport : drawing.colours.textDim;
    const int top = (band - kBrace) / 2;
    drawing.Fill(left, top, right - left, kBrace, Mix(drawing.colours.well, full, 0.5F));
    drawing.Fill(left, top, kBraceEnd, kBrace, full);
    drawing.Fill(std::max(left, right - kBraceEnd), top, kBraceEnd, kBrace, full);
}

}  // namespace

void DrawRuler(const SongDrawing& drawing, int loopBand) {
    const QRect& part = drawing.part;
    drawing.Fill(part.left(), 0, part.width(), loopBand, drawing.colours.well);
    drawing.Fill(part.left(), loopBand, part.width(), drawing.height - loopBand, drawing.colours.panel);
    DrawBars(drawing, loopBand);
    DrawMarkers(drawing, loopBand);
    if (!drawing.view.loop.IsEmpty()) DrawBrace(drawing, loopBand);
    drawing.Fill(part.left(), drawing.height - 1, part.width(), 1, drawing.colours.well);
}

void DrawMarks(const SongDrawing& drawing, bool flag) {
    const CTimeGrid& time = drawing.view.time;
    if (!flag && drawing.view.loopOn && !drawing.view.loop.IsEmpty()) {
        drawing.Fill(time.XOf(drawing.view.loop.first), 0, 1, drawing.height, drawing.colours.transport);
        drawing.Fill(time.XOf(drawing.view.loop.end), 0, 1, drawing.height, drawing.colours.transport);
    }
    for (const SongMarker& marker : drawing.view.markers) {
        if (!flag)
            drawing.Fill(time.XOf(marker.step), 0, 1, drawing.height,
                         Mix(drawing.colours.lane, drawing.colours.pattern, 0.6F));
    }
    if (drawing.view.playhead < 0) return;
    const double x = std::floor(time.XOf(drawing.view.playhead));
    drawing.Fill(x, flag ? drawing.height - 10 : 0, 2, drawing.height, drawing.colours.transport);
    if (!flag || !drawing.Touches(x - 6, x + 8)) return;
    drawing.canvas.Mask(drawing.masks.PlayheadFlag(), drawing.origin.x() + x - 5,
                        drawing.origin.y() + drawing.height - 12, drawing.colours.transport);
}

}  // namespace quib
