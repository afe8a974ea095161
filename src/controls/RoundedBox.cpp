// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/RoundedBox.h"

#include <algorithm>
#include <cmath>

#include "controls/CPalette.h"

namespace quib {

namespace {

// How much of a pixel lies within a box of that size with round corners; `place` counts from the box's corner.
float Cover(const QPoint& place, const QSize& size, qreal radius) {
    if (place.x() < 0 || place.y() < 0 || place.x() >= size.width() || place.y() >= size.height()) return 0;
    // All four corners are as the upper left one.
    const qreal across = radius - std::min(place.x(), size.width() - 1 - place.x()) - 0.5;
    const qreal down = radius - std::min(place.y(), size.height() - 1 - place.y()) - 0.5;
    if (across <= 0 || down <= 0) return 1;
    return static_cast<float>(std::clamp(radius + 0.5 - std::hypot(across, down), 0.0, 1.0));
}

class CRoundedBoxPainter {
public:
    CRoundedBoxPainter(const QRect& boxArea, const RoundedBox& shape)
        : area(boxArea), box(shape), innerSize(area.size() - QSize(2 * box.edgeWidth, 2 * box.edgeWidth)) {
        box.radius = std::min({box.radius, area.width() / 2.0, area.height() / 2.0});
        corner = static_cast<int>(std::ceil(std::max<qreal>(box.radius, box.edgeWidth)));
    }

    // A line of the box, as far as it lies between two columns.
    void Line(QRgb* pixels, int y, int first, int last) const {
        const int row = y - area.top();
        const bool isInCorner = row < corner || row >= area.height() - corner;
        const bool isEdge = row < box.edgeWidth || row >= area.height() - box.edgeWidth;
        const float way = (static_cast<float>(row) + 0.5F) / static_cast<float>(area.height());
        const QRgb filling = box.top == box.bottom ? box.top : Mix(box.top, box.bottom, way);
        const int side = isInCorner ? corner : box.edgeWidth;
        const int innerFirst = std::max(first, area.left() + side);
        const int innerLast = std::min(last, area.right() - side);
        for (int x = first; x < std::min(innerFirst, last + 1); ++x) Pixel(pixels[x], {x, y}, filling);
        if ((isEdge || box.filled) && innerFirst <= innerLast) {
            std::fill(pixels + innerFirst, pixels + innerLast + 1, isEdge ? box.edge : filling);
        }
        for (int x = std::max(innerFirst, innerLast + 1); x <= last; ++x) Pixel(pixels[x], {x, y}, filling);
    }

private:
    void Pixel(QRgb& pixel, const QPoint& place, QRgb filling) const {
        const QPoint own = place - area.topLeft();
        const float whole = Cover(own, area.size(), box.radius);
        const QPoint inset(box.edgeWidth, box.edgeWidth);
        const float inner =
            box.edgeWidth == 0 ? whole : Cover(own - inset, innerSize, std::max(0.0, box.radius - box.edgeWidth));
        if (box.edgeWidth == 0) {
            pixel = Mix(pixel, filling, whole);
        } else {
            pixel = Mix(Mix(pixel, box.edge, whole), box.filled ? filling : pixel, inner);
        }
    }

    QRect area;
    RoundedBox box;
    QSize innerSize;
    int corner;
};

}  // namespace

void DrawRoundedBox(QImage& image, const QRect& clip, const QRect& area, const RoundedBox& box) {
    const QRect shown = area.intersected(clip).intersected(image.rect());
    if (shown.isEmpty()) return;
    const CRoundedBoxPainter painter(area, box);
    for (int y = shown.top(); y <= shown.bottom(); ++y) {
        painter.Line(reinterpret_cast<QRgb*>(image.scanLine(y)), y, shown.left(), shown.right());
    }
}

}  // namespace quib
