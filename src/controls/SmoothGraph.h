// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A line that goes from left to right written straight into a picture, smoothed as a painter does it and many times
// faster. Plain pixels; any thread that owns the picture.

#include <QImage>
#include <QPointF>
#include <QRect>
#include <QRgb>
#include <span>

namespace quib {

struct SmoothGraph {
    std::span<const QPointF> points;  // two or more, none left of the one before
    qreal scale = 1;                  // pixels of the picture in a unit of the points
    qreal width = 1;                  // pixels
    QRgb colour = 0;                  // opaque
};

// `clip` in pixels of the picture, which has 32 bits a pixel.
void DrawGraph(QImage& image, const QRect& clip, const SmoothGraph& graph);

}  // namespace quib
