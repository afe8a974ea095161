// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Draws very many small squares of one colour into pixels, a band of rows at a time: the points of a curve that lie too
// close for more. Each band is made where the processor has it at hand. User-interface thread.

#include <QPoint>
#include <QRgb>
#include <QSize>
#include <span>
#include <vector>

namespace quib {

class CCrowdPainter {
public:
    static constexpr int kBandRows = 32;

    // Squares of `newSize` pixels on an area of so many; there is none yet.
    void Begin(const QSize& newArea, int newSize, QRgb newColour);
    // Where its upper left corner is; what lies beside the area is not drawn.
    void Add(const QPoint& corner);
    // The rows of the area from a multiple of kBandRows on, as many as a band has at the most; the pixels are theirs,
    // without a gap between rows.
    void Draw(std::span<QRgb> pixels, int firstRow) const;

private:
    QSize area;
    int size = 0;
    QRgb colour = 0;
    std::vector<std::vector<QPoint>> bands;
};

}  // namespace quib
