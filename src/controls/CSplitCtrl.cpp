// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CSplitCtrl.h"

#include <algorithm>

#include "controls/CWinControl.h"

namespace quib {

CSplitCtrl::CSplitCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                       bool isVertical)
    : CControl(window, number, left, top, newWidth, newHeight), vertical(isVertical) {
    hoverLook = true;
}

void CSplitCtrl::OnLButtonDown(int px, int py, int button) {
    if (button != 0) return;
    dragging = true;
    grip = vertical ? px - X() : py - Y();
    Update(false, true);
}

void CSplitCtrl::OnMouseMove(int px, int py) {
    Owner().setCursor(vertical ? Qt::SplitHCursor : Qt::SplitVCursor);
    if (dragging && onSplit) onSplit(std::clamp((vertical ? px : py) - grip, lowest, highest));
}

void CSplitCtrl::MoveTo(int place) {
    if (onSplit) onSplit(std::clamp(place, lowest, highest));
}

// Up and right move it that way.
void CSplitCtrl::Turn(int /*part*/, int notches, bool fine) {
    const int way = notches * (fine ? 1 : 10);
    MoveTo(vertical ? X() + way : Y() - way);
}

void CSplitCtrl::GoToEnd(bool highestValue) { MoveTo(highestValue == vertical ? highest : lowest); }

void CSplitCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) {
    dragging = false;
    Update(false, true);
}

void CSplitCtrl::OnMouseLeave() { Owner().unsetCursor(); }

void CSplitCtrl::Resize(int newWidth, int newHeight) { SetSize(newWidth, newHeight); }

void CSplitCtrl::Draw() {
    const CPalette& palette = Palette();
    Canvas().Fill(Rectangle(), palette.Colour(dragging || hovered ? QStringLiteral("edge") : QStringLiteral("line")));
    const QRgb dots = dragging || hovered ? palette.Accent(section) : palette.Colour(QStringLiteral("textDim"));
    const QPointF centre = QRectF(Rectangle()).center();
    for (const int offset : {-6, 0, 6}) {
        Canvas().Ellipse(vertical ? centre + QPointF(0, offset) : centre + QPointF(offset, 0), 1.2, dots);
    }
}

}  // namespace quib
