// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Draws very many small squares of one colour into pixels, piece by piece: the points of a curve that lie too close for
// more. User-interface thread.

#include <QPoint>
#include <QSize>
#include <vector>

#include "controls/PixelTile.h"

namespace quib {

class CCrowdPainter {
public:
    // Squares of `newSize` pixels on an area of so many; there is none yet.
    void Begin(const QSize& newArea, int newSize, QRgb newColour);
    // Where its upper left corner is; what lies beside the area is not drawn.
    void Add(const QPoint& corner);
    // Those of a piece of the area.
    void Draw(const PixelTile& tile) const;

private:
    QSize area;
    int size = 0;
    QRgb colour = 0;
    int fieldsAcross = 0;
    std::vector<std::vector<QPoint>> fields;  // of the grid of tiles, row by row
};

}  // namespace quib
