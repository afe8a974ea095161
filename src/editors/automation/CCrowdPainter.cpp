// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CCrowdPainter.h"

#include <algorithm>

namespace quib {

void CCrowdPainter::Begin(const QSize& newArea, int newSize, QRgb newColour) {
    area = newArea;
    size = newSize;
    colour = newColour;
    for (std::vector<QPoint>& band : bands) band.clear();
    bands.resize(static_cast<std::size_t>(std::max(0, area.height() + kBandRows - 1) / kBandRows));
}

// One on the edge of two bands is drawn in both.
void CCrowdPainter::Add(const QPoint& corner) {
    const int last = corner.y() + size - 1;
    if (last < 0 || corner.y() >= area.height() || corner.x() + size <= 0 || corner.x() >= area.width()) return;
    const int end = std::min(last, area.height() - 1) / kBandRows;
    for (int band = std::max(corner.y(), 0) / kBandRows; band <= end; ++band)
        bands[static_cast<std::size_t>(band)].push_back(corner);
}

void CCrowdPainter::Draw(std::span<QRgb> pixels, int firstRow) const {
    const int width = area.width();
    const auto band = static_cast<std::size_t>(firstRow / kBandRows);
    if (width <= 0 || band >= bands.size()) return;
    const int rows = static_cast<int>(pixels.size()) / width;
    for (const QPoint& corner : bands[band]) {
        const int left = std::max(corner.x(), 0);
        const int right = std::min(corner.x() + size, width);
        const int top = std::max(corner.y() - firstRow, 0);
        const int bottom = std::min(corner.y() - firstRow + size, rows);
        for (int y = top; y < bottom; ++y) {
            QRgb* const line = pixels.data() + static_cast<std::ptrdiff_t>(y) * width;
            for (int x = left; x < right; ++x) line[x] = colour;
        }
    }
}

}  // namespace quib
