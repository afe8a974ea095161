// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the painters of the song pane work with: where they draw, in which colours, which part is wanted. Places
// are skin pixels from the control's upper left corner. User-interface thread.

#include <array>

#include "controls/CCanvas.h"
#include "controls/CPalette.h"
#include "editors/pianoroll/drawing/CMasks.h"
#include "editors/playlist/SongView.h"

namespace quib {

struct SongColours {
    SongColours();
    QRgb lane, laneBeat, laneBar, panel, well, text, textMuted, textDim, transport, pattern, line;
    std::array<QRgb, 8> tracks;
};

struct SongDrawing {
    CCanvas& canvas;
    CMasks& masks;
    const SongColours& colours;
    const SongView& view;
    QPoint origin;
    QRect part;
    QRect shown;  // of the canvas, outside of which nothing is drawn
    int width = 0;
    int height = 0;

    bool Touches(double left, double right) const { return right > part.left() && left <= part.right(); }
    void Fill(double x, double y, double w, double h, QRgb colour) const {
        if (w > 0 && h > 0 && Touches(x, x + w)) canvas.Fill({origin.x() + x, origin.y() + y, w, h}, colour);
    }
    void Frame(double x, double y, double w, double h, double thick, QRgb colour) const;
    // Gives the width of the text.
    double TextFrom(double x, double y, int height, const QString& text, QRgb colour, int size, bool strong) const;
    QRect OnCanvas(const QRect& area) const { return area.intersected(part).translated(origin).intersected(shown); }
    void ClipTo(const QRect& area) const { canvas.SetClip(OnCanvas(area)); }
    void Unclip() const { ClipTo({0, 0, width, height}); }
};

}  // namespace quib
