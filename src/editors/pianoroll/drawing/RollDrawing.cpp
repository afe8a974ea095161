// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/drawing/RollDrawing.h"

#include <algorithm>

namespace quib {

void RollDrawing::Frame(double left, double top, double width, double height, double line, QRgb colour) const {
    const double side = std::min({line, width / 2, height / 2});
    Fill(left, top, width, side, colour);
    Fill(left, top + height - side, width, side, colour);
    Fill(left, top, side, height, colour);
    Fill(left + width - side, top, side, height, colour);
}

void RollDrawing::Framed(double left, double top, double width, double height, double line, QRgb frame,
                         QRgb body) const {
    Fill(left, top, width, height, frame);
    if (width > 2 * line && height > 2 * line) {
        Fill(left + line, top + line, width - 2 * line, height - 2 * line, body);
    }
}

void RollDrawing::DashedFrame(double left, double top, double width, double height, int dash, int gap,
                              QRgb colour) const {
    for (double along = 0; along < width; along += dash + gap) {
        const double length = std::min<double>(dash, width - along);
        Fill(left + along, top, length, 1, colour);
        Fill(left + along, top + height - 1, length, 1, colour);
    }
    for (double along = 0; along < height; along += dash + gap) {
        const double length = std::min<double>(dash, height - along);
        Fill(left, top + along, 1, length, colour);
        Fill(left + width - 1, top + along, 1, length, colour);
    }
}

void RollDrawing::TextFrom(double left, double top, double height, const QString& text, QRgb colour, int size,
                           bool strong) const {
    Mask(masks.Text(text, size, strong), left, top, height, colour);
}

void RollDrawing::TextTo(double right, double top, double height, const QString& text, QRgb colour, int size,
                         bool strong) const {
    const TextMask& mask = masks.Text(text, size, strong);
    Mask(mask, right - mask.width, top, height, colour);
}

std::pair<int, int> RollDrawing::Rows() const noexcept {
    const int top = std::max(PianoRollView::kHeaderHeight, part.top());
    const int bottom = std::min(view.Height() - 1, part.bottom());
    return {std::max(0, view.RowAt(bottom)), std::min(view.RowAt(top), view.Rows().Count() - 1)};
}

void DrawPlayheadLine(const RollDrawing& drawing, double x, double top, double bottom) {
    drawing.Fill(x - 1, top, 2, bottom - top, drawing.colours.transport);
}

void DrawPlayheadFlag(const RollDrawing& drawing, double x) {
    drawing.canvas.Mask(drawing.masks.PlayheadFlag(), drawing.origin.x() + x - 6, drawing.origin.y() + 1,
                        drawing.colours.transport);
}

}  // namespace quib
