// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/CLanePainter.h"

#include <algorithm>
#include <cmath>

namespace quib {

namespace {

constexpr int kEdge = 3;  // the item's left edge in the colour of its track
constexpr int kHatchStep = 6;
constexpr int kHatchWidth = 252;        // a multiple of the step
constexpr int kWidestMiniature = 2048;  // skin pixels; a wider pattern shows its beginning
constexpr int kTallLane = 36;           // from here on the notes stand below the number

}  // namespace

void CLanePainter::Draw(const SongDrawing& drawing, const CPlaylistEdit& edit, const Look& look) {
    DrawGround(drawing);
    const double from = drawing.view.time.StepAt(drawing.part.left() - 8);
    const double to = drawing.view.time.StepAt(drawing.part.right() + 8);
    const std::vector<PlaylistSpan>& spans = edit.Spans();
    const auto first = static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, edit.SpanAt(from) - 1));
    for (std::size_t index = first; index < spans.size() && spans[index].first < to; ++index) {
        DrawSpan(drawing, edit, spans[index], look);
    }
    for (std::size_t index = first; index < spans.size() && spans[index].first < to; ++index) {
        if (!IsSelected(edit.State(), static_cast<std::uint32_t>(spans[index].entry))) continue;
        // An item and its repeat are one.
        const PlaylistSpan& begin = spans[index];
        while (index + 1 < spans.size() && spans[index + 1].entry == begin.entry) ++index;
        const double left = drawing.view.time.XOf(begin.first) - 1;
        const double right = drawing.view.time.XOf(std::min<double>(spans[index].end, to + 100));
        drawing.Frame(left, 0, right - left, drawing.height, 2, drawing.colours.text);
    }
    drawing.Unclip();
}

void CLanePainter::DrawGround(const SongDrawing& drawing) const {
    const SongColours& colours = drawing.colours;
    const QRect& part = drawing.part;
    drawing.Fill(part.left(), 0, part.width(), drawing.height - 1, colours.lane);
    drawing.Fill(part.left(), drawing.height - 1, part.width(), 1, colours.well);
    const CTimeGrid& time = drawing.view.time;
    for (const GridLine& line : time.Lines(time.StepAt(part.left() - 1), time.StepAt(part.right() + 1))) {
        if (line.kind == ELine::kStep) continue;
        drawing.Fill(time.XOf(line.step), 0, 1, drawing.height - 1,
                     line.kind == ELine::kBar ? colours.laneBar : colours.laneBeat);
    }
}

void CLanePainter::DrawSpan(const SongDrawing& drawing, const CPlaylistEdit& edit, const PlaylistSpan& span,
                            const Look& look) {
    const SongColours& colours = drawing.colours;
    const CTimeGrid& time = drawing.view.time;
    const int left = static_cast<int>(time.XOf(span.first));
    const double endStep = span.end == kNoSongEnd ? std::max(time.EndStep() + 1, time.Extent()) : span.end;
    const int right = static_cast<int>(std::min(time.XOf(endStep), 100000.0));
    const int height = drawing.height - 2;
    if (edit.IsEndMark(span.entry)) {
        drawing.Fill(left, 0, 2, drawing.height - 1, colours.text);
        return drawing.Fill(left + 2, drawing.height / 2 - 3, 5, 7, colours.text);
    }
    const QRect area(left, 1, right - left, height);
    const int length = edit.Patterns().lengths[static_cast<std::size_t>(span.pattern)];
    if (span.repeats) {
        DrawRepeat(drawing, span, length, area, look.track);
    } else {
        const float strength = 0.26F + 0.08F * static_cast<float>(span.pattern % 4);
        drawing.Fill(left, 1, right - left - 1, height, Mix(colours.lane, look.track, strength));
        drawing.ClipTo(area.adjusted(0, 0, -2, 0));
        DrawNotes(drawing, edit, span, area, Mix(look.track, colours.text, 0.5F));
        drawing.ClipTo(area.adjusted(0, 0, -3, 0));
        const int line = drawing.height >= kTallLane ? 22 : drawing.height;
        drawing.TextFrom(left + kEdge + 4, 0, line, QString::number(span.pattern + 1), colours.text, 12, true);
        drawing.Unclip();
        drawing.Fill(left, 1, kEdge, height, look.track);
    }
    const bool sounds = look.sounding >= span.first && look.sounding < span.end;
    if (sounds) drawing.Fill(left, 1, right - left - 1, 2, colours.transport);
}

void CLanePainter::DrawRepeat(const SongDrawing& drawing, const PlaylistSpan& span, int length, QRect area,
                              QRgb track) {
    drawing.Fill(area.left(), 1, area.width() - 1, area.height(), Mix(drawing.colours.lane, track, 0.18F));
    drawing.ClipTo(area.adjusted(0, 0, -1, 0));
    const QImage& lines = Hatch(drawing, area.height());
    const QRgb colour = Mix(drawing.colours.lane, track, 0.42F);
    // Lines that stand still under the scroll; only what is wanted is walked through.
    const int scroll = drawing.view.time.Scroll();
    const int from = std::max(area.left(), drawing.part.left());
    const int to = std::min(area.right(), drawing.part.right());
    for (int x = from - (from + scroll) % kHatchWidth; x <= to; x += kHatchWidth) {
        drawing.canvas.Mask(lines, drawing.origin.x() + x, drawing.origin.y() + 1, colour);
    }
    const CTimeGrid& time = drawing.view.time;
    const double first = std::max<double>(span.first, time.StepAt(from));
    const auto turn = static_cast<int>(std::ceil((first - span.origin) / length));
    for (double x = time.XOf(span.origin + turn * length); x <= to;
         x += static_cast<double>(length) * time.StepWidth()) {
        drawing.Fill(x, area.bottom() - 4, 1, 5, track);
    }
    drawing.Unclip();
}

void CLanePainter::DrawNotes(const SongDrawing& drawing, const CPlaylistEdit& edit, const PlaylistSpan& span,
                             QRect area, QRgb colour) {
    const bool tall = drawing.height >= kTallLane;
    const int top = tall ? 20 : 4;
    const int height = area.height() - top - (tall ? 4 : 2);
    const int indent = tall ? 0 : 20;
    if (height < 6 || area.width() < indent + 10) return;
    if (!tall) drawing.ClipTo(area.adjusted(indent, 0, -2, 0));
    const QImage& image = MiniatureOf(drawing, edit, span.pattern, height);
    if (image.isNull()) return;
    const double x = drawing.view.time.XOf(span.origin);
    drawing.canvas.Mask(image, drawing.origin.x() + x, drawing.origin.y() + area.top() + top, colour);
}

const QImage& CLanePainter::MiniatureOf(const SongDrawing& drawing, const CPlaylistEdit& edit, int pattern,
                                        int height) {
    const auto index = static_cast<std::size_t>(pattern);
    Miniature& kept = miniatures[index];
    const auto notes = edit.Instrument()->patterns[index].ForEdit();
    const int stepWidth = drawing.view.time.StepWidth();
    const qreal scale = drawing.canvas.Scale();
    if (kept.pattern == notes && kept.stepWidth == stepWidth && kept.height == height && kept.scale == scale) {
        return kept.image;
    }
    kept = {notes, stepWidth, height, scale, {}};
    if (notes->Notes().empty()) return kept.image;
    const int width = std::min(notes->LoopLength() * stepWidth, kWidestMiniature);
    kept.image = QImage(static_cast<int>(std::ceil(width * scale)), static_cast<int>(std::ceil(height * scale)),
                        QImage::Format_ARGB32_Premultiplied);
    kept.image.fill(Qt::transparent);
    int low = 127;
    int high = 0;
    for (const Note& note : notes->Notes()) {
        low = std::min(low, note.key);
        high = std::max(high, note.key);
    }
    QPainter painter(&kept.image);
    painter.scale(scale, scale);
    const double row = std::max(2.0, std::min(3.0, static_cast<double>(height) / (high - low + 1)));
    for (const Note& note : notes->Notes()) {
        if (note.position < 0 || note.position >= static_cast<float>(notes->LoopLength())) continue;
        const double share = high > low ? static_cast<double>(high - note.key) / (high - low) : 0.5;
        const double length = std::max(2.0, static_cast<double>(note.length) * stepWidth - 1);
        painter.fillRect(QRectF(static_cast<double>(note.position) * stepWidth, share * (height - row), length, row),
                         Qt::white);
    }
    return kept.image;
}

const QImage& CLanePainter::Hatch(const SongDrawing& drawing, int height) {
    const qreal scale = drawing.canvas.Scale();
    if (height == hatchHeight && scale == hatchScale) return hatch;
    hatchHeight = height;
    hatchScale = scale;
    hatch = QImage(static_cast<int>(std::ceil(kHatchWidth * scale)), static_cast<int>(std::ceil(height * scale)),
                   QImage::Format_ARGB32_Premultiplied);
    hatch.fill(Qt::transparent);
    QPainter painter(&hatch);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.setPen(QPen(Qt::white, 1));
    for (int x = -height; x < kHatchWidth + height; x += kHatchStep) {
        painter.drawLine(QPointF(x, height), QPointF(x + height, 0));
    }
    return hatch;
}

}  // namespace quib
