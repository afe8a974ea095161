// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CZoomCtrl.h"

#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "controls/VirtualKeys.h"
#include "texts/Texts.h"

namespace quib {

CZoomCtrl::CZoomCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight)
    : CControl(window, number, left, top, newWidth, newHeight) {
    takesWheel = true;
    captureOnClick = false;
    doubleClickIsClick = false;
}

int CZoomCtrl::DirectionAt(int px, int py) const noexcept {
    if (IsUpright()) return py - Y() < Height() / 2 ? 1 : -1;
    return px - X() < Width() / 2 ? -1 : 1;
}

void CZoomCtrl::OnMouseMove(int px, int py) {
    Owner().setCursor(Qt::PointingHandCursor);
    if (DirectionAt(px, py) == lit) return;
    lit = DirectionAt(px, py);
    Update(false, true);
}

void CZoomCtrl::OnLButtonDown(int px, int py, int button) {
    if (button == 0 && enabled && onZoom) onZoom(DirectionAt(px, py));
}

void CZoomCtrl::OnDoubleClick(int px, int py) { OnLButtonDown(px, py, 0); }

void CZoomCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    if (enabled && onZoom) onZoom(NotchesOf(word) > 0 ? 1 : -1);
}

void CZoomCtrl::OnMouseLeave() {
    Owner().unsetCursor();
    if (lit == 0) return;
    lit = 0;
    Update(false, true);
}

ControlPart CZoomCtrl::PartAt(int part) const {
    const QString word = Text(part == 0 ? TextKey("Zoom out") : TextKey("Zoom in"));
    const int half = (IsUpright() ? Height() : Width()) / 2;
    const QRect upright(X(), Y() + (1 - part) * half, Width(), half - 1);
    return {word, {}, IsUpright() ? upright : QRect(X() + part * half, Y(), half - 1, Height())};
}

void CZoomCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    for (const int direction : {-1, 1}) {
        const bool isFirst = (direction < 0) != IsUpright();
        const QSizeF half = IsUpright() ? QSizeF(Width(), Height() / 2.0 - 1) : QSizeF(Width() / 2.0 - 1, Height());
        const QPointF way = IsUpright() ? QPointF(0, Height() / 2.0) : QPointF(Width() / 2.0, 0);
        const QRectF area(QPointF(X(), Y()) + (isFirst ? QPointF() : way), half);
        const EState state = !enabled ? EState::kDisabled : lit == direction ? EState::kHover : EState::kNormal;
        DrawCap(Canvas(), area, state, Palette().Accent(section));
        Canvas().Glyph(Skin(), direction < 0 ? picture::kGlyphMinus : picture::kGlyphPlus, area.center(),
                       CapTextColour(state, Palette().Accent(section)));
    }
}

}  // namespace quib
