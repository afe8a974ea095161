// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A box with round corners written straight into a picture, smoothed as a painter does it and many times faster.
// Plain pixels, opaque colours; any thread that owns the picture.

#include <QImage>
#include <QRect>
#include <QRgb>

namespace quib {

struct RoundedBox {
    qreal radius = 0;   // of the outer edge, pixels
    int edgeWidth = 0;  // pixels; 0: none
    QRgb edge = 0;
    bool filled = true;
    QRgb top = 0;  // the filling, from above to below
    QRgb bottom = 0;
};

// `area` and `clip` in pixels of the picture, which has 32 bits a pixel.
void DrawRoundedBox(QImage& image, const QRect& clip, const QRect& area, const RoundedBox& box);

}  // namespace quib
