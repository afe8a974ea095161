// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/StripColumns.h"

#include <algorithm>

namespace quib {

namespace {

constexpr int kUsual = 1342;  // the width that the measures are for
constexpr int kCells = 16;
constexpr int kGap = 8;
constexpr int kPitch = 28;
constexpr int kLeastPitch = 22;
constexpr int kTiniestPitch = 20;
constexpr int kLengthWidth = 100;

// As much of `missing` as `room` can give; the rest stays missing.
int Give(int& missing, int room) noexcept {
    const int given = std::clamp(missing, 0, room);
    missing -= given;
    return given;
}

int PixelsOf(int extra, int percent) noexcept { return extra * percent / 100; }

}  // namespace

StripColumns StripColumns::For(int width) noexcept {
    const int extra = std::max(0, width - kUsual);
    int missing = std::max(0, kUsual - width);
    StripColumns columns;
    columns.pan = 236;
    columns.cells = 284;
    columns.cellPitch = kPitch + PixelsOf(extra, 34) / kCells;
    columns.equaliserWidth = 164 + PixelsOf(extra, 30) - Give(missing, 92);
    columns.sendsWidth = 160 - Give(missing, 48);
    columns.insertsWidth = 148 + PixelsOf(extra, 15) - Give(missing, 40);
    columns.cellPitch -= (Give(missing, kCells * (kPitch - kLeastPitch)) + kCells - 1) / kCells;
    if (missing > 0) {
        columns.folded = true;
        columns.cells = 240;
        missing -= 44;
        columns.cellPitch -= (Give(missing, kCells * (kLeastPitch - kTiniestPitch)) + kCells - 1) / kCells;
        columns.insertsWidth -= Give(missing, 20);
    }
    columns.length = columns.cells + kCells * columns.cellPitch + kGap;
    columns.equaliser = columns.length + kLengthWidth + kGap;
    columns.inserts = columns.equaliser + columns.equaliserWidth + kGap;
    columns.sends = columns.inserts + columns.insertsWidth + kGap;
    // What is left over by whole pixels.
    columns.sendsWidth = width - 6 - columns.sends;
    return columns;
}

ClosedColumns ClosedColumns::For(int width) noexcept {
    constexpr int kRight = 84;  // of the lamp and the buttons behind the presets
    const int extra = std::max(0, width - kUsual);
    int missing = std::max(0, kUsual - width);
    ClosedColumns columns;
    columns.presetsWidth = 110;
    columns.meterWidth = 164 + PixelsOf(extra, 30);
    columns.cellPitch = kPitch + PixelsOf(extra, 34) / kCells;
    columns.levelWidth = 112 + PixelsOf(extra, 15);
    columns.nameWidth = 128;
    columns.presetsWidth -= Give(missing, 56);
    columns.meterWidth -= Give(missing, 104);
    columns.cellPitch -= (Give(missing, kCells * (kPitch - kTiniestPitch)) + kCells - 1) / kCells;
    columns.levelWidth -= Give(missing, 40);
    columns.nameWidth -= Give(missing, 80);
    columns.mute = 76 + columns.nameWidth;
    columns.level = columns.mute + 132;
    columns.meter = columns.level + columns.levelWidth + 56;
    columns.cells = columns.meter + columns.meterWidth + 12;
    columns.presets = columns.cells + kCells * columns.cellPitch + kGap;
    columns.presetsWidth = std::max(25, width - kRight - columns.presets);
    return columns;
}

}  // namespace quib
