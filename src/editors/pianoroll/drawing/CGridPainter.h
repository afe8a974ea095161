// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Draws the ground of the grid. All pixel rows of a kind of row are alike, so one line of pixels of each kind
// is kept and copied; after scrolling or zooming these few lines are made anew. User-interface thread.

#include <array>
#include <vector>

#include "editors/pianoroll/drawing/RollDrawing.h"

namespace quib {

class CGridPainter {
public:
    // `used`: the keys that have notes, for drums.
    void Draw(const RollDrawing& drawing, const KeySet& used);
    // A row's line of pixels over the grid's width, to be drawn with the notes upon it.
    std::span<const QRgb> RowLine(const RollDrawing& drawing, int row, const KeySet& used);
    // The line between a row and the next one.
    void DrawGap(const RollDrawing& drawing, int row) const;
    // What lies below the rows, and the key limits.
    void DrawBeyond(const RollDrawing& drawing) const;
    // 1 pixel where rows have room for a line between them.
    static int GapOf(const PianoRollView& view) noexcept;

    // The line of pixels of a lane beside the grid: its ground with the lines of time, over the grid's width.
    std::span<const QRgb> LaneLine(const RollDrawing& drawing);

private:
    enum EGround { kOff, kInScale, kRoot, kGap, kGroundCount };
    // What the lines depend on.
    struct Look {
        int width = 0, scroll = 0, stepWidth = 0, stepCount = 0;
        qreal scale = 0;
        int left = 0;  // of the grid in the window
        Meter meter;
        friend bool operator==(const Look&, const Look&) = default;
    };
    using Line = std::vector<QRgb>;

    void Prepare(const RollDrawing& drawing);
    void DrawLimits(const RollDrawing& drawing) const;
    Line MakeLine(const RollDrawing& drawing, QRgb ground) const;
    const Line& LineOf(EGround ground, bool outside) const { return lines[ground + (outside ? kGroundCount : 0)]; }
    EGround GroundOf(const RollDrawing& drawing, int key, const KeySet& used) const;

    Look look;
    std::array<Line, 2 * kGroundCount> lines;  // inside the key limits, then outside
};

}  // namespace quib
