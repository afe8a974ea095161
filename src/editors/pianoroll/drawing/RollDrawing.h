// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the parts of the drawing share: where, in which colours, and how much of it. Places are skin pixels
// of the control; outside of the part nothing is drawn. User-interface thread.

#include <QRect>
#include <utility>

#include "controls/CCanvas.h"
#include "editors/pianoroll/PianoRollOptions.h"
#include "editors/pianoroll/PianoRollView.h"
#include "editors/pianoroll/drawing/CMasks.h"
#include "editors/pianoroll/drawing/RollColours.h"

namespace quib {

struct RollDrawing {
    CCanvas& canvas;
    const PianoRollView& view;
    const PianoRollOptions& options;
    const RollColours& colours;
    CMasks& masks;
    QPoint origin;  // of the control in the window
    QRect part;     // of the control
    int stepCount;  // of the pattern

    void Fill(double left, double top, double width, double height, QRgb colour) const {
        canvas.Fill({origin.x() + left, origin.y() + top, width, height}, colour);
    }
    // Inside the rectangle.
    void Frame(double left, double top, double width, double height, double line, QRgb colour) const;
    // A rectangle with its frame, as fast as two fills.
    void Framed(double left, double top, double width, double height, double line, QRgb frame, QRgb body) const;
    void DashedFrame(double left, double top, double width, double height, int dash, int gap, QRgb colour) const;
    // From `left` on, or up to `right`; the letters in the middle of [top, top + height).
    void TextFrom(double left, double top, double height, const QString& text, QRgb colour, int size,
                  bool strong) const;
    void TextTo(double right, double top, double height, const QString& text, QRgb colour, int size, bool strong) const;
    void Mask(const TextMask& mask, double left, double top, double height, QRgb colour) const {
        canvas.Mask(mask.image, origin.x() + left, origin.y() + top + (height - mask.height) / 2, colour);
    }
    bool Touches(double left, double right) const noexcept { return right >= part.left() && left <= part.right() + 1; }
    // The rows that the part touches, from the lowest to the highest one; empty where lowest > highest.
    std::pair<int, int> Rows() const noexcept;
    double EndX() const noexcept { return view.XOf(stepCount); }
};

// The line through header, grid or lane, over [top, bottom).
void DrawPlayheadLine(const RollDrawing& drawing, double x, double top, double bottom);
void DrawPlayheadFlag(const RollDrawing& drawing, double x);

}  // namespace quib
