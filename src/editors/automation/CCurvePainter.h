// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Draws the line that the points of a lane play, whatever their number, into pixels: each column gets the least and the
// greatest value that the engine's function takes there, widened to the thickness of the line and smoothed over
// quarters of a pixel. User-interface thread.

#include <vector>

#include "controls/PixelTile.h"
#include "editors/automation/CLaneView.h"

namespace quib {

class CCurvePainter {
public:
    struct Stroke {
        QRgb colour = 0;
        double width = 2;     // skin pixels
        bool filled = false;  // an eighth of the colour below the line
        bool dashed = false;
    };
    // Looks where the line is in an area of pixels, `scale` of them a skin pixel, the view's corner at `origin`.
    void Find(const CLaneView& view, double scale, const QPoint& origin, const QRect& area, const PointList& points,
              const Stroke& wanted);
    // Draws a piece of that area.
    void Draw(const PixelTile& tile) const;

private:
    static constexpr int kShares = 4;  // of a column

    // Of the line from above, rows of the area; where nothing is played the upper one is below the lower one.
    struct Edges {
        std::vector<float> upper, lower;
    };
    void FindCentre(const CLaneView& view, double scale, const QPoint& origin, const PointList& points, int margin);
    void FindEdges(double radius, int margin);
    void FindColumns(double scale, int margin);
    enum class EPart { kNothing, kLine, kGround, kMixed };
    EPart PartOf(std::size_t column, int firstRow, int endRow) const noexcept;
    void FillRow(QRgb* pixels, int y, EPart part, int from, int count) const;
    void Smooth(const PixelTile& tile, int leftmost, int end) const;

    QRect area;
    Stroke stroke;
    Edges centre;  // with the margins that widening needs
    Edges edges;
    // Of each column: where it is full, and from where on there is something below it.
    std::vector<int> top, foot, below;
    // Where it is covered in part: from `first` to `top` and from `foot` to `last`.
    std::vector<int> first, last;
};

}  // namespace quib
