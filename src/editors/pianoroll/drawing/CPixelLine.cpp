// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/drawing/CPixelLine.h"

#include <algorithm>
#include <cmath>

namespace quib {

// As the canvas rounds.
int CPixelLine::PixelOf(double place) const noexcept {
    const double pixel = (origin + place) * scale;
    return static_cast<int>(pixel + std::copysign(0.5, pixel));
}

void CPixelLine::Begin(const RollDrawing& drawing, std::span<const QRgb> ground) {
    scale = drawing.canvas.Scale();
    origin = drawing.origin.x();
    const int left = PixelOf(drawing.view.GridLeft());
    const int size = static_cast<int>(ground.size());
    const int from = std::clamp(PixelOf(drawing.part.left()) - left, 0, size);
    const int to = std::clamp(PixelOf(drawing.part.right() + 1) - left, from, size);
    pixels.assign(ground.begin() + from, ground.begin() + to);
    first = left + from;
}

void CPixelLine::Fill(double left, double right, QRgb colour) {
    const int size = static_cast<int>(pixels.size());
    const int from = std::clamp(PixelOf(left) - first, 0, size);
    std::fill(pixels.begin() + from, pixels.begin() + std::clamp(PixelOf(right) - first, from, size), colour);
}

void CPixelLine::CopyTo(const RollDrawing& drawing, double top, double height) const {
    const QRectF place(first / scale, drawing.origin.y() + top, static_cast<double>(pixels.size()) / scale, height);
    drawing.canvas.FillLines(place, pixels);
}

}  // namespace quib
