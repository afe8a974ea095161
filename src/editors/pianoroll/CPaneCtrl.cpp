// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CPaneCtrl.h"

#include "controls/CWinControl.h"

namespace quib {

void CPaneCtrl::DrawPart(const QRect& wanted) {
    const QRect part = wanted.intersected(QRect(0, 0, Width(), Height()));
    const QRect area = OnCanvas(part);
    if (area.isEmpty() || !IsShown() || !Owner().HasBackBuffer()) return;
    Canvas().SetClip(area);
    Paint(part);
    Owner().BlitRectangle(area);
}

}  // namespace quib
