// SPDX-License-Identifier: GPL-3.0-or-later
// Whole pixels of the canvas: shown in a widget, kept, put back and moved.
#include "controls/CCanvas.h"

#include <QPaintEngine>
#include <algorithm>
#include <cmath>
#include <cstring>

namespace quib {

namespace {

// The picture that a painter paints into when pixels may be copied there one by one. A painter whose clip
// is made of many rectangles takes several times as long, on all processors.
QImage* CopyTarget(const QPainter& painter, qreal ratio) {
    QPaintDevice* const device = painter.paintEngine()->paintDevice();
    const QTransform transform = painter.deviceTransform();
    const bool isPlain =
        transform.type() <= QTransform::TxScale && transform.m11() == ratio && transform.m22() == ratio;
    if (!isPlain || device == nullptr || device->devType() != QInternal::Image) return nullptr;
    auto* const image = static_cast<QImage*>(device);
    const QImage::Format format = image->format();
    return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32_Premultiplied ? image : nullptr;
}

void CopyPixels(const QImage& from, const QRect& area, QImage& to, const QPoint& offset) {
    const QRect part = area.intersected(from.rect()).intersected(to.rect().translated(-offset));
    if (part.isEmpty()) return;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const auto* const source = reinterpret_cast<const QRgb*>(from.constScanLine(y)) + part.left();
        auto* const line = reinterpret_cast<QRgb*>(to.scanLine(y + offset.y())) + part.left() + offset.x();
        std::copy_n(source, part.width(), line);
    }
}

}  // namespace

void CCanvas::CopyTo(QPainter& target, const QRegion& region, qreal ratio) {
    QImage* const pixels = CopyTarget(target, ratio);
    // A painter may go on while pixels are read one by one.
    if (pixels == nullptr) Image();
    const QPoint offset = target.deviceTransform().map(QPointF(0, 0)).toPoint();
    for (const QRect& part : region) {
        const QRectF source(part.x() * ratio, part.y() * ratio, part.width() * ratio, part.height() * ratio);
        if (pixels != nullptr) {
            CopyPixels(image, source.toAlignedRect(), *pixels, offset);
        } else {
            target.drawImage(QRectF(part), image, source);
        }
    }
}

QRect CCanvas::WidgetPart(const QRect& area, qreal ratio) const noexcept {
    const QRect pixels = Pixels(area);
    const auto from = [&](int pixel) { return static_cast<int>(std::ceil(pixel / ratio)); };
    const auto to = [&](int pixel) { return static_cast<int>(std::floor((pixel + 1) / ratio)) - 1; };
    return {QPoint(from(pixels.left()), from(pixels.top())), QPoint(to(pixels.right()), to(pixels.bottom()))};
}

void CCanvas::PutBack(const QImage& pixels, const QRect& area) {
    const QPoint corner = Pixels(area).topLeft();
    const QRect target = QRect(corner, pixels.size()).intersected(QRect(QPoint(0, 0), image.size()));
    const auto bytes = static_cast<std::size_t>(std::max(0, target.width())) * 4;
    for (int y = target.top(); y <= target.bottom(); ++y) {
        const auto* const source = reinterpret_cast<const QRgb*>(pixels.constScanLine(y - corner.y()));
        std::memcpy(reinterpret_cast<QRgb*>(image.scanLine(y)) + target.x(), source + target.x() - corner.x(), bytes);
    }
}

void CCanvas::DrawTo(QPainter& target, const QRegion& region, qreal ratio,
                     const std::function<void(const QRect& area)>& draw) {
    QImage* const pixels = CopyTarget(target, ratio);
    const QPoint offset = target.deviceTransform().map(QPointF(0, 0)).toPoint();
    const bool isDirect = pixels != nullptr && offset.x() >= 0 && offset.y() >= 0;
    QImage shown;
    if (isDirect) {
        uchar* const corner = pixels->scanLine(offset.y()) + offset.x() * static_cast<qsizetype>(sizeof(QRgb));
        shown = QImage(corner, std::min(image.width(), pixels->width() - offset.x()),
                       std::min(image.height(), pixels->height() - offset.y()), pixels->bytesPerLine(),
                       QImage::Format_RGB32);
    }
    for (const QRect& part : region) {
        const QRect taken =
            QRectF(part.x() * ratio, part.y() * ratio, part.width() * ratio, part.height() * ratio).toAlignedRect();
        const QRectF area(taken.x() / scale, taken.y() / scale, taken.width() / scale, taken.height() / scale);
        if (isDirect) {
            DrawOn(shown, taken.intersected(shown.rect()), [&] { draw(area.toAlignedRect()); });
        } else {
            draw(area.toAlignedRect());
        }
    }
    if (!isDirect) CopyTo(target, region, ratio);
}

void CCanvas::DrawOn(QImage& pixels, const QRect& part, const std::function<void()>& draw) {
    if (part.isEmpty()) return;
    const auto exchange = [&](const QRect& next) {
        if (painter.isActive()) painter.end();
        std::swap(image, pixels);
        limit = next;
        clip = {};
        clipPixels = {};
    };
    exchange(part);
    draw();
    exchange({});
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
        const auto* const source = reinterpret_cast<const QRgb*>(image.constScanLine(y - shift.y()));
        std::memmove(reinterpret_cast<QRgb*>(image.scanLine(y)) + target.x(), source + target.x() - shift.x(), bytes);
    };
    if (shift.y() > 0) {
        for (int y = target.bottom(); y >= target.top(); --y) copyLine(y);
    } else {
        for (int y = target.top(); y <= target.bottom(); ++y) copyLine(y);
    }
    return true;
}

}  // namespace quib
