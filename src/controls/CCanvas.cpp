// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CCanvas.h"

#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "controls/SmoothGraph.h"

namespace quib {

namespace {

QRgb Over(QRgb under, QRgb colour, int alpha) noexcept {
    const auto mix = [alpha](int from, int to) { return from + (to - from) * alpha / 255; };
    return qRgb(mix(qRed(under), qRed(colour)), mix(qGreen(under), qGreen(colour)), mix(qBlue(under), qBlue(colour)));
}

// Such as the painter takes long for: of many points, each right of the one before.
bool IsGraph(std::span<const QPointF> points) {
    constexpr std::size_t kFew = 16;
    return points.size() >= kFew && std::ranges::is_sorted(points, {}, &QPointF::x);
}

}  // namespace

void CCanvas::Reset(const QSize& size, qreal newScale, QRgb background) {
    if (painter.isActive()) painter.end();
    if (scale != newScale) letters.clear();
    scale = newScale;
    const QSize pixels(std::max(1, static_cast<int>(std::ceil(size.width() * scale))),
                       std::max(1, static_cast<int>(std::ceil(size.height() * scale))));
    if (image.size() != pixels) image = QImage(pixels, QImage::Format_RGB32);
    image.fill(background);
    clip = {};
    SetClip(QRect(QPoint(0, 0), size));
}

QPainter& CCanvas::Painter() {
    if (!painter.isActive()) {
        painter.begin(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painterClip.reset();
    }
    if (painterClip != clipPixels) {
        painterClip = clipPixels;
        painter.resetTransform();
        painter.setClipRect(clipPixels);
        painter.scale(scale, scale);
    }
    return painter;
}

void CCanvas::FillLines(const QRectF& rectangle, std::span<const QRgb> line) {
    const QRect whole = Pixels(rectangle);
    const QRect area =
        whole.intersected(clipPixels).intersected(QRect(whole.topLeft(), QSize(int(line.size()), whole.height())));
    if (area.isEmpty()) return;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        auto* const target = reinterpret_cast<QRgb*>(image.scanLine(y)) + area.left();
        std::copy_n(line.data() + (area.left() - whole.left()), area.width(), target);
    }
}

void CCanvas::DrawTiles(const QRect& part, const std::function<void(const PixelTile& tile)>& draw) {
    const QRect visible = part.intersected(clipPixels);
    const std::ptrdiff_t stride = image.bytesPerLine() / static_cast<std::ptrdiff_t>(sizeof(QRgb));
    auto* const pixels = reinterpret_cast<QRgb*>(image.bits());
    for (int top = part.top(); top <= visible.bottom(); top += PixelTile::kRows) {
        for (int left = part.left(); left <= visible.right(); left += PixelTile::kColumns) {
            const QRect area = QRect(left, top, PixelTile::kColumns, PixelTile::kRows).intersected(visible);
            if (area.isEmpty()) continue;
            draw({area.translated(-part.topLeft()), pixels + area.top() * stride + area.left(), stride});
        }
    }
}

void CCanvas::Mask(const QImage& mask, qreal x, qreal y, QRgb colour) {
    const QPoint corner = Pixels({x, y, 1, 1}).topLeft();
    const QRect area = QRect(corner, mask.size()).intersected(clipPixels);
    for (int line = area.top(); line <= area.bottom(); ++line) {
        const auto* const source = reinterpret_cast<const QRgb*>(mask.constScanLine(line - corner.y()));
        auto* const target = reinterpret_cast<QRgb*>(image.scanLine(line));
        for (int column = area.left(); column <= area.right(); ++column) {
            const int alpha = qAlpha(source[column - corner.x()]);
            if (alpha == 0) continue;
            target[column] = Over(target[column], colour, alpha);
        }
    }
}

const QImage& CCanvas::Image() {
    if (painter.isActive()) painter.end();
    return image;
}

void CCanvas::SetClip(const QRect& rectangle) {
    if (clip == rectangle) return;
    clip = rectangle;
    clipPixels = Pixels(rectangle).intersected(limit.isNull() ? image.rect() : limit);
}

QRect CCanvas::Pixels(const QRectF& rectangle) const noexcept {
    // As std::lround, which is a call each.
    const auto pixel = [this](qreal place) { return static_cast<int>(place * scale + std::copysign(0.5, place)); };
    const QPoint first(pixel(rectangle.left()), pixel(rectangle.top()));
    return {first, QPoint(pixel(rectangle.right()) - 1, pixel(rectangle.bottom()) - 1)};
}

qreal CCanvas::OnPixel(qreal place) const noexcept { return std::round(place * scale) / scale; }

QRectF CCanvas::OnPixels(const QRectF& rectangle) const noexcept {
    return {QPointF(OnPixel(rectangle.left()), OnPixel(rectangle.top())),
            QPointF(OnPixel(rectangle.right()), OnPixel(rectangle.bottom()))};
}

qreal CCanvas::LineWidth(qreal width) const noexcept { return std::max(1.0, std::ceil(width * scale - 0.5)) / scale; }

void CCanvas::Fill(const QRectF& rectangle, QRgb wanted) {
    const QRgb colour = Shown(wanted);
    const QRect area = Pixels(rectangle).intersected(clipPixels);
    if (area.isEmpty()) return;
    // Many times faster than the painter, which writes to the same memory at once.
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(area.top())) + area.left();
    const qsizetype pitch = image.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
    for (int y = area.top(); y <= area.bottom(); ++y, line += pitch) {
        if (qAlpha(colour) == 255) {
            std::fill_n(line, area.width(), colour);
        } else {
            for (int x = 0; x < area.width(); ++x) line[x] = Over(line[x], colour, qAlpha(colour));
        }
    }
}

// Straight into the picture, as plain filling is.
void CCanvas::Rounded(const QRectF& rectangle, RoundedBox box) {
    box.radius *= scale;
    DrawRoundedBox(image, clipPixels, Pixels(rectangle), box);
}

void CCanvas::FillRound(const QRectF& rectangle, qreal radius, QRgb wanted) {
    const QRgb colour = Shown(wanted);
    if (qAlpha(colour) == 255) return Rounded(rectangle, {radius, 0, 0, true, colour, colour});
    Painter().setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgba(colour));
    painter.drawRoundedRect(OnPixels(rectangle), radius, radius);
}

void CCanvas::FillVertical(const QRectF& rectangle, qreal radius, QRgb top, QRgb bottom) {
    Rounded(rectangle, {radius, 0, 0, true, Shown(top), Shown(bottom)});
}

void CCanvas::Frame(const QRectF& rectangle, qreal radius, QRgb colour, qreal width) {
    const QRgb edge = Shown(colour);
    const int pixels = qRound(LineWidth(width) * scale);
    if (qAlpha(edge) == 255) return Rounded(rectangle, {radius, pixels, edge, false, 0, 0});
    const qreal whole = LineWidth(width);
    const qreal inset = whole / 2;
    const qreal within = std::max(0.0, radius - inset);
    Painter().setPen(QPen(QColor::fromRgba(edge), whole, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(OnPixels(rectangle).adjusted(inset, inset, -inset, -inset), within, within);
}

void CCanvas::Box(const QRectF& rectangle, qreal radius, QRgb fill, QRgb edge, qreal width) {
    if (qAlpha(fill) == 255 && qAlpha(edge) == 255) {
        const QRgb inner = Shown(fill);
        return Rounded(rectangle, {radius, qRound(LineWidth(width) * scale), Shown(edge), true, inner, inner});
    }
    FillRound(rectangle, radius, fill);
    Frame(rectangle, radius, edge, width);
}

void CCanvas::Line(qreal x0, qreal y0, qreal x1, qreal y1, QRgb colour, qreal width) {
    const qreal whole = LineWidth(width);
    if (y0 == y1) return Fill({x0, OnPixel(y0 - whole / 2), x1 - x0, whole}, colour);
    if (x0 == x1) return Fill({OnPixel(x0 - whole / 2), y0, whole, y1 - y0}, colour);
    Painter().setPen(QPen(QColor::fromRgba(Shown(colour)), whole, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(x0, y0), QPointF(x1, y1));
}

void CCanvas::Polyline(std::span<const QPointF> points, QRgb colour, qreal width) {
    if (IsGraph(points)) return DrawGraph(image, clipPixels, {points, scale, width * scale, Shown(colour)});
    Painter().setPen(QPen(QColor::fromRgba(Shown(colour)), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(points.data(), static_cast<int>(points.size()));
}

// In each column of pixels, what the line passes there.
void CCanvas::FastPolyline(std::span<const QPointF> points, QRgb wanted) {
    const QRgb colour = Shown(wanted);
    const int wide = qRound(LineWidth(1) * scale);
    QPointF from;
    for (std::size_t index = 0; index < points.size(); ++index) {
        const QPointF to = points[index] * scale;
        if (index > 0) FillPassed(from, to, wide, colour);
        from = to;
    }
}

void CCanvas::FillPassed(const QPointF& from, const QPointF& to, int wide, QRgb colour) {
    const qreal slope = to.x() > from.x() ? (to.y() - from.y()) / (to.x() - from.x()) : 0;
    auto* const pixels = reinterpret_cast<QRgb*>(image.scanLine(0));
    const qsizetype pitch = image.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
    const int first = static_cast<int>(std::floor(from.x()));
    const int last = std::max(first, static_cast<int>(std::ceil(to.x())) - 1);
    for (int column = std::max(first, clipPixels.left()); column <= std::min(last, clipPixels.right()); ++column) {
        const qreal begin = from.y() + slope * (std::max<qreal>(column, from.x()) - from.x());
        const qreal end = column == last ? to.y() : from.y() + slope * (column + 1 - from.x());
        const int top = std::max(static_cast<int>(std::floor(std::min(begin, end))), clipPixels.top());
        const int bottom = std::min(static_cast<int>(std::floor(std::max(begin, end))) + wide - 1, clipPixels.bottom());
        for (int y = top; y <= bottom; ++y) pixels[y * pitch + column] = colour;
    }
}

void CCanvas::Polygon(std::span<const QPointF> points, QRgb colour) {
    Painter().setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgba(Shown(colour)));
    painter.drawPolygon(points.data(), static_cast<int>(points.size()));
}

void CCanvas::Ellipse(const QPointF& centre, qreal radius, QRgb colour) {
    Painter().setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgba(Shown(colour)));
    painter.drawEllipse(centre, radius, radius);
}

void CCanvas::Arc(const QPointF& centre, qreal radius, qreal from, qreal to, QRgb colour, qreal width) {
    QPainterPath path;
    const QRectF bounds(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    path.arcMoveTo(bounds, 90 - from);
    path.arcTo(bounds, 90 - from, from - to);
    Painter().strokePath(path, QPen(QColor::fromRgba(Shown(colour)), width, Qt::SolidLine, Qt::RoundCap));
}

void CCanvas::Blit(const SkinBitmap& bitmap, qreal x, qreal y) {
    if (!bitmap.IsNull()) Painter().drawImage(QPointF(OnPixel(x), OnPixel(y)), bitmap.image);
}

void CCanvas::Blit(const SkinBitmap& bitmap, qreal x, qreal y, const QRectF& source) {
    if (bitmap.IsNull() || source.isEmpty()) return;
    const QRectF pixels = Pixels(source);
    Painter().drawImage(QRectF(QPointF(OnPixel(x), OnPixel(y)), pixels.size() / scale), bitmap.image, pixels);
}

void CCanvas::BlitTurned(const SkinBitmap& bitmap, const QPointF& centre, qreal degrees) {
    if (bitmap.IsNull()) return;
    Painter().save();
    painter.translate(centre);
    painter.rotate(degrees);
    painter.drawImage(QPointF(-bitmap.width / 2.0, -bitmap.height / 2.0), bitmap.image);
    painter.restore();
}

void CCanvas::BlitStretched(const SkinBitmap& bitmap, const QRectF& wanted, qreal cap) {
    const QRectF target = OnPixels(wanted);
    if (bitmap.IsNull() || target.isEmpty()) return;
    const bool upright = bitmap.height > bitmap.width || target.height() > target.width();
    const qreal whole = upright ? bitmap.image.height() : bitmap.image.width();
    const qreal length = upright ? target.height() : target.width();
    const qreal end = std::min(OnPixel(cap), length / 2);
    const std::array<qreal, 4> from = {0, end * scale, whole - end * scale, whole};
    const std::array<qreal, 4> to = {0, end, length - end, length};
    for (std::size_t part = 0; part + 1 < from.size(); ++part) {
        const qreal sourceLength = from[part + 1] - from[part];
        const qreal targetLength = to[part + 1] - to[part];
        if (sourceLength <= 0 || targetLength <= 0) continue;
        const QRectF source = upright ? QRectF(0, from[part], bitmap.image.width(), sourceLength)
                                      : QRectF(from[part], 0, sourceLength, bitmap.image.height());
        const QRectF place = upright ? QRectF(target.left(), target.top() + to[part], target.width(), targetLength)
                                     : QRectF(target.left() + to[part], target.top(), targetLength, target.height());
        Painter().drawImage(place, bitmap.image, source);
    }
}

void CCanvas::Glyph(CSkin& skin, int number, const QPointF& centre, QRgb colour) {
    const SkinBitmap& bitmap = skin.Glyph(number, Shown(colour));
    Blit(bitmap, centre.x() - bitmap.width / 2.0, centre.y() - bitmap.height / 2.0);
}

}  // namespace quib
