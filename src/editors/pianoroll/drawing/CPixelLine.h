// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A line of pixels that is filled by places of a control and copied into rows of its canvas. User-interface thread.

#include <span>
#include <vector>

#include "editors/pianoroll/drawing/RollDrawing.h"

namespace quib {

class CPixelLine {
public:
    // The part's share of `ground`, which begins at the grid's left edge.
    void Begin(const RollDrawing& drawing, std::span<const QRgb> ground);
    // Places as RollDrawing counts.
    void Fill(double left, double right, QRgb colour);
    void CopyTo(const RollDrawing& drawing, double top, double height) const;

private:
    int PixelOf(double place) const noexcept;

    std::vector<QRgb> pixels;
    int first = 0;  // pixel of the canvas
    double scale = 1;
    double origin = 0;
};

}  // namespace quib
