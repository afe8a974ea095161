// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CDirectPaneCtrl.h"

#include "controls/CWinControl.h"

namespace quib {

CDirectPaneCtrl::CDirectPaneCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth,
                                 int newHeight)
    : CPaneCtrl(window, number, left, top, newWidth, newHeight), CPainted(window, *this) {}

void CDirectPaneCtrl::DrawPart(const QRect& wanted) {
    if (IsShown()) Owner().BlitRectangle(OnCanvas(wanted.intersected(QRect(0, 0, Width(), Height()))));
}

void CDirectPaneCtrl::PaintArea(const QRect& area) {
    const QRect shown = area.intersected(ShownRectangle());
    if (shown.isEmpty()) return;
    Canvas().SetClip(shown);
    Paint(shown.translated(-X(), -Y()));
}

}  // namespace quib
