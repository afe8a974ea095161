// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CCrowdPainter.h"

#include <algorithm>

namespace quib {

void CCrowdPainter::Begin(const QSize& newArea, int newSize, QRgb newColour) {
    area = newArea;
    size = newSize;
    colour = newColour;
    fieldsAcross = (area.width() + PixelTile::kColumns - 1) / PixelTile::kColumns;
    const int fieldsDown = (area.height() + PixelTile::kRows - 1) / PixelTile::kRows;
    for (std::vector<QPoint>& field : fields) field.clear();
    fields.resize(static_cast<std::size_t>(std::max(0, fieldsAcross * fieldsDown)));
}

// One on the edge of two tiles is drawn in both.
void CCrowdPainter::Add(const QPoint& corner) {
    const int left = std::max(corner.x(), 0);
    const int top = std::max(corner.y(), 0);
    const int right = std::min(corner.x() + size, area.width()) - 1;
    const int bottom = std::min(corner.y() + size, area.height()) - 1;
    if (left > right) return;
    for (int down = top / PixelTile::kRows; down * PixelTile::kRows <= bottom; ++down) {
        for (int across = left / PixelTile::kColumns; across <= right / PixelTile::kColumns; ++across)
            fields[static_cast<std::size_t>(down * fieldsAcross + across)].push_back(corner);
    }
}

void CCrowdPainter::Draw(const PixelTile& tile) const {
    const int down = tile.area.top() / PixelTile::kRows;
    const int across = tile.area.left() / PixelTile::kColumns;
    for (const QPoint& corner : fields[static_cast<std::size_t>(down * fieldsAcross + across)]) {
        const int left = std::max(corner.x(), tile.area.left());
        const int right = std::min(corner.x() + size, tile.area.right() + 1);
        const int top = std::max(corner.y(), tile.area.top());
        const int bottom = std::min(corner.y() + size, tile.area.bottom() + 1);
        for (int y = top; y < bottom; ++y) {
            QRgb* const line = tile.Row(y) + (left - tile.area.left());
            for (int x = 0; x < right - left; ++x) line[x] = colour;
        }
    }
}

}  // namespace quib
