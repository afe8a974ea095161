// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CCanvas.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QHash>
#include <QPainterPath>
#include <array>
#include <cmath>
#include <cstring>

namespace quib {

namespace {

QString LoadFontFamily() {
    QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/Inter-SemiBold.otf"));
    const int font = QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/Inter-Medium.otf"));
    const QStringList families = QFontDatabase::applicationFontFamilies(font);
    return families.isEmpty() ? QStringLiteral("Sans Serif") : families.first();
}

}  // namespace

QFont SkinFont(int height, bool strong) {
    static const QString family = LoadFontFamily();
    static QHash<int, QFont> fonts;
    const int key = 2 * height + (strong ? 1 : 0);
    if (const auto known = fonts.constFind(key); known != fonts.constEnd()) return *known;
    QFont font(family);
    font.setPixelSize(height);
    font.setWeight(strong ? QFont::DemiBold : QFont::Medium);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::NoSubpixelAntialias);
    fonts.insert(key, font);
    return font;
}

void CCanvas::Reset(const QSize& size, qreal newScale, QRgb background) {
    if (painter.isActive()) painter.end();
    scale = newScale;
    const QSize pixels(std::max(1, static_cast<int>(std::ceil(size.width() * scale))),
                       std::max(1, static_cast<int>(std::ceil(size.height() * scale))));
    if (image.size() != pixels) image = QImage(pixels, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(background);
    clip = QRect(QPoint(0, 0), size);
}

QPainter& CCanvas::Painter() {
    if (!painter.isActive()) {
        painter.begin(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.setClipRect(clip);
    }
    return painter;
}

const QImage& CCanvas::Image() {
    if (painter.isActive()) painter.end();
    return image;
}

void CCanvas::SetClip(const QRect& rectangle) {
    if (clip == rectangle) return;
    clip = rectangle;
    if (painter.isActive()) painter.setClipRect(clip);
}

void CCanvas::Fill(const QRectF& rectangle, QRgb colour) { Painter().fillRect(rectangle, QColor::fromRgba(colour)); }

void CCanvas::FillRound(const QRectF& rectangle, qreal radius, QRgb colour) {
    Painter().setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgba(colour));
    painter.drawRoundedRect(rectangle, radius, radius);
}

void CCanvas::FillVertical(const QRectF& rectangle, qreal radius, QRgb top, QRgb bottom) {
    QLinearGradient gradient(rectangle.topLeft(), rectangle.bottomLeft());
    gradient.setColorAt(0, QColor::fromRgba(top));
    gradient.setColorAt(1, QColor::fromRgba(bottom));
    Painter().setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawRoundedRect(rectangle, radius, radius);
}

void CCanvas::Frame(const QRectF& rectangle, qreal radius, QRgb colour, qreal width) {
    Painter().setPen(QPen(QColor::fromRgba(colour), width));
    painter.setBrush(Qt::NoBrush);
    const qreal inset = width / 2;
    painter.drawRoundedRect(rectangle.adjusted(inset, inset, -inset, -inset), radius, radius);
}

void CCanvas::Line(qreal x0, qreal y0, qreal x1, qreal y1, QRgb colour, qreal width) {
    Painter().setPen(QPen(QColor::fromRgba(colour), width, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(x0, y0), QPointF(x1, y1));
}

void CCanvas::Polyline(std::span<const QPointF> points, QRgb colour, qreal width) {
    Painter().setPen(QPen(QColor::fromRgba(colour), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(points.data(), static_cast<int>(points.size()));
}

void CCanvas::FastPolyline(std::span<const QPointF> points, QRgb colour) {
    Painter().setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(QColor::fromRgba(colour), 0));
    painter.drawPolyline(points.data(), static_cast<int>(points.size()));
    painter.setRenderHint(QPainter::Antialiasing, true);
}

void CCanvas::Polygon(std::span<const QPointF> points, QRgb colour) {
    Painter().setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgba(colour));
    painter.drawPolygon(points.data(), static_cast<int>(points.size()));
}

void CCanvas::Ellipse(const QPointF& centre, qreal radius, QRgb colour) {
    Painter().setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgba(colour));
    painter.drawEllipse(centre, radius, radius);
}

void CCanvas::Arc(const QPointF& centre, qreal radius, qreal from, qreal to, QRgb colour, qreal width) {
    QPainterPath path;
    const QRectF bounds(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    path.arcMoveTo(bounds, 90 - from);
    path.arcTo(bounds, 90 - from, from - to);
    Painter().strokePath(path, QPen(QColor::fromRgba(colour), width, Qt::SolidLine, Qt::RoundCap));
}

void CCanvas::Blit(const SkinBitmap& bitmap, qreal x, qreal y) {
    if (!bitmap.IsNull()) Painter().drawImage(QPointF(x, y), bitmap.image);
}

void CCanvas::Blit(const SkinBitmap& bitmap, qreal x, qreal y, const QRectF& source) {
    if (bitmap.IsNull() || source.isEmpty()) return;
    const qreal ratio = bitmap.image.devicePixelRatio();
    const QRectF pixels(source.x() * ratio, source.y() * ratio, source.width() * ratio, source.height() * ratio);
    Painter().drawImage(QRectF(QPointF(x, y), source.size()), bitmap.image, pixels);
}

void CCanvas::BlitTurnedTo(const SkinBitmap& bitmap, const QPointF& centre, qreal degrees, qreal side) {
    if (bitmap.IsNull()) return;
    Painter().save();
    painter.translate(centre);
    painter.rotate(degrees);
    painter.drawImage(QRectF(-side / 2, -side / 2, side, side), bitmap.image);
    painter.restore();
}

void CCanvas::BlitStretched(const SkinBitmap& bitmap, const QRectF& target, qreal cap) {
    if (bitmap.IsNull() || target.isEmpty()) return;
    const qreal ratio = bitmap.image.devicePixelRatio();
    const bool upright = bitmap.height > bitmap.width || target.height() > target.width();
    const qreal length = upright ? bitmap.height : bitmap.width;
    const qreal wanted = upright ? target.height() : target.width();
    const qreal end = std::min(cap, wanted / 2);
    const std::array<qreal, 4> from = {0, end, length - end, length};
    const std::array<qreal, 4> to = {0, end, wanted - end, wanted};
    for (std::size_t part = 0; part + 1 < from.size(); ++part) {
        const qreal sourceLength = (from[part + 1] - from[part]) * ratio;
        const qreal targetLength = to[part + 1] - to[part];
        if (sourceLength <= 0 || targetLength <= 0) continue;
        const QRectF source = upright ? QRectF(0, from[part] * ratio, bitmap.image.width(), sourceLength)
                                      : QRectF(from[part] * ratio, 0, sourceLength, bitmap.image.height());
        const QRectF place = upright ? QRectF(target.left(), target.top() + to[part], target.width(), targetLength)
                                     : QRectF(target.left() + to[part], target.top(), targetLength, target.height());
        Painter().drawImage(place, bitmap.image, source);
    }
}

void CCanvas::Glyph(CSkin& skin, int number, const QPointF& centre, QRgb colour) {
    const SkinBitmap& bitmap = skin.Glyph(number, colour);
    // On a whole pixel of the screen, so that every one of a row looks the same.
    const auto snapped = [this](qreal place) { return std::round(place * scale) / scale; };
    Blit(bitmap, snapped(centre.x() - bitmap.width / 2.0), snapped(centre.y() - bitmap.height / 2.0));
}

void CCanvas::Text(const QRectF& rectangle, const QString& text, QRgb colour, int height, Qt::Alignment alignment,
                   bool strong) {
    if (text.isEmpty()) return;
    const QFont font = SkinFont(height, strong);
    Painter().setFont(font);
    painter.setPen(QColor::fromRgba(colour));
    const QFontMetricsF metrics(font);
    const bool fits = metrics.horizontalAdvance(text) <= rectangle.width() + 0.5;
    painter.drawText(rectangle, static_cast<int>(alignment) | Qt::TextSingleLine | Qt::TextDontClip,
                     fits ? text : metrics.elidedText(text, Qt::ElideRight, rectangle.width()));
}

qreal CCanvas::Paragraph(const QRectF& rectangle, const QString& text, QRgb colour, int height) {
    Painter().setFont(SkinFont(height));
    painter.setPen(QColor::fromRgba(colour));
    QRectF taken;
    painter.drawText(rectangle, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, text, &taken);
    return taken.height();
}

qreal CCanvas::TextWidth(const QString& text, int height, bool strong) {
    return QFontMetricsF(SkinFont(height, strong)).horizontalAdvance(text);
}

bool CCanvas::Scroll(const QRect& area, int dx, int dy) {
    const auto exact = [this](int value) { return value * scale == std::floor(value * scale); };
    if (!exact(dx) || !exact(dy) || !exact(area.x()) || !exact(area.y())) return false;
    if (painter.isActive()) painter.end();
    const auto pixel = [this](int value) { return static_cast<int>(value * scale); };
    const QRect whole = QRect(pixel(area.x()), pixel(area.y()), pixel(area.width()), pixel(area.height()))
                            .intersected(QRect(QPoint(0, 0), image.size()));
    const QRect target = whole.translated(pixel(dx), pixel(dy)).intersected(whole);
    if (target.isEmpty()) return true;
    const QPoint shift(pixel(dx), pixel(dy));
    const auto bytes = static_cast<std::size_t>(target.width()) * 4;
    const auto copyLine = [&](int y) {
        std::memmove(image.scanLine(y) + target.x() * 4,
                     image.constScanLine(y - shift.y()) + (target.x() - shift.x()) * 4, bytes);
    };
    if (shift.y() > 0) {
        for (int y = target.bottom(); y >= target.top(); --y) copyLine(y);
    } else {
        for (int y = target.top(); y <= target.bottom(); ++y) copyLine(y);
    }
    return true;
}

}  // namespace quib
