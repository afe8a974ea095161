// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A piece of a picture that is drawn pixel by pixel, small enough to stay where the processor has it at hand while
// several things are drawn over each other.

#include <QRect>
#include <QRgb>
#include <cstddef>

namespace quib {

struct PixelTile {
    static constexpr int kColumns = 256;
    static constexpr int kRows = 32;

    QRect area;                 // in pixels from the corner of what is drawn, within one field of a grid of such tiles
    QRgb* first = nullptr;      // its upper left one
    std::ptrdiff_t stride = 0;  // pixels from a row to the next

    // The pixels of a row of the area, from its left edge on.
    QRgb* Row(int y) const noexcept { return first + (y - area.top()) * stride; }
};

}  // namespace quib
