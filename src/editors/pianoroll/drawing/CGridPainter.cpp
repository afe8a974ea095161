// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/drawing/CGridPainter.h"

#include <algorithm>
#include <cmath>

#include "controls/CPalette.h"

namespace quib {

namespace {
constexpr int kLeastRowWithGap = 5;  // pixels

bool IsOutside(const RollDrawing& drawing, int key) {
    return key < drawing.options.lowerLimit || key >= drawing.options.upperLimit;
}

}  // namespace

std::span<const QRgb> CGridPainter::LaneLine(const RollDrawing& drawing) {
    Prepare(drawing);
    return LineOf(kOff, false);
}

void CGridPainter::Prepare(const RollDrawing& drawing) {
    const CTimeGrid& time = drawing.view.time;
    const Look now{time.Width(),      time.Scroll(),          time.StepWidth(),
                   drawing.stepCount, drawing.canvas.Scale(), drawing.origin.x() + drawing.view.GridLeft(),
                   time.meter};
    if (now == look) return;
    look = now;
    const RollColours& colours = drawing.colours;
    const std::array<QRgb, kGroundCount> grounds = {colours.gridOff, colours.gridKey, colours.gridRoot,
                                                    colours.gridStep};
    const QRgb shade = Palette().Colour(QStringLiteral("shade"));
    for (std::size_t ground = 0; ground < kGroundCount; ++ground) {
        lines[ground] = MakeLine(drawing, grounds[ground]);
        Line outside = lines[ground];
        for (QRgb& pixel : outside) pixel = Mix(pixel, shade, 0.34F);
        lines[ground + kGroundCount] = std::move(outside);
    }
}

CGridPainter::Line CGridPainter::MakeLine(const RollDrawing& drawing, QRgb ground) const {
    const auto pixel = [this](double place) { return static_cast<int>(std::lround((look.left + place) * look.scale)); };
    const int first = pixel(0);
    Line line(static_cast<std::size_t>(std::max(0, pixel(look.width) - first)), ground);
    const auto fill = [&](double from, double to, QRgb colour) {
        const int size = static_cast<int>(line.size());
        const int begin = std::clamp(pixel(from) - first, 0, size);
        std::fill(line.begin() + begin, line.begin() + std::clamp(pixel(to) - first, begin, size), colour);
    };
    const CTimeGrid& time = drawing.view.time;
    const std::array<QRgb, 3> colours = {drawing.colours.gridStep, drawing.colours.gridBeat, drawing.colours.gridBar};
    for (const GridLine& entry : time.Lines(time.FirstStep() - 1, time.EndStep())) {
        const double x = time.XOf(entry.step);
        fill(x, x + 1, colours[static_cast<std::size_t>(entry.kind)]);
    }
    const int end = std::clamp(pixel(time.XOf(look.stepCount)) - first, 0, static_cast<int>(line.size()));
    std::transform(
        line.begin() + end, line.end(), line.begin() + end,
        [shade = Palette().Colour(QStringLiteral("shade"))](QRgb colour) { return Mix(colour, shade, 0.5F); });
    return line;
}

CGridPainter::EGround CGridPainter::GroundOf(const RollDrawing& drawing, int key, const KeySet& used) const {
    if (drawing.view.IsDrums()) {
        if (key == drawing.options.focusedKey) return kRoot;
        return used.test(static_cast<std::size_t>(key)) ? kInScale : kOff;
    }
    const Scale& scale = drawing.options.scale;
    // Without a scale the rows tell white keys from black ones.
    if (scale.type == EScaleType::kChromatic) return IsBlackKey(key) ? kOff : kInScale;
    if (IsRoot(scale, key)) return kRoot;
    return IsInScale(scale, key) ? kInScale : kOff;
}

int CGridPainter::GapOf(const PianoRollView& view) noexcept { return view.RowHeight() < kLeastRowWithGap ? 0 : 1; }

std::span<const QRgb> CGridPainter::RowLine(const RollDrawing& drawing, int row, const KeySet& used) {
    Prepare(drawing);
    const int key = drawing.view.Rows().KeyOf(row);
    return LineOf(GroundOf(drawing, key, used), IsOutside(drawing, key));
}

void CGridPainter::DrawGap(const RollDrawing& drawing, int row) const {
    const PianoRollView& view = drawing.view;
    const int gap = GapOf(view);
    const QRectF place(drawing.origin.x() + view.GridLeft(), drawing.origin.y() + view.YOfRow(row - 1) - gap,
                       look.width, gap);
    drawing.canvas.FillLines(place, LineOf(kGap, IsOutside(drawing, view.Rows().KeyOf(row))));
}

void CGridPainter::Draw(const RollDrawing& drawing, const KeySet& used) {
    const PianoRollView& view = drawing.view;
    const auto [lowest, highest] = drawing.Rows();
    for (int row = highest; row >= lowest; --row) {
        const QRectF body(drawing.origin.x() + view.GridLeft(), drawing.origin.y() + view.YOfRow(row),
                          view.time.Width(), view.RowHeight() - GapOf(view));
        drawing.canvas.FillLines(body, RowLine(drawing, row, used));
        DrawGap(drawing, row);
    }
    DrawBeyond(drawing);
}

void CGridPainter::DrawBeyond(const RollDrawing& drawing) const {
    const PianoRollView& view = drawing.view;
    const int foot = view.YOfRow(-1);
    const int bottom = std::min(view.Height(), drawing.part.bottom() + 1);
    if (foot < bottom) {
        drawing.Fill(view.GridLeft(), foot, view.time.Width(), bottom - foot, drawing.colours.wellDeep);
    }
    DrawLimits(drawing);
}

void CGridPainter::DrawLimits(const RollDrawing& drawing) const {
    if (drawing.view.IsDrums()) return;
    const QRgb colour = Mix(drawing.colours.gridStep, drawing.colours.keyboard, 0.7F);
    const int left = drawing.view.GridLeft() - 1;
    for (const int limit : {drawing.options.lowerLimit, drawing.options.upperLimit}) {
        const int y = drawing.view.FootOf(limit) - 1;
        if (limit <= 0 || limit > kHighestKey || y < PianoRollView::kHeaderHeight) continue;
        drawing.Fill(left, y, drawing.view.time.Width() + 1, 1, colour);
    }
}

}  // namespace quib
