// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/ball/CBallListCtrl.h"

#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "controls/VirtualKeys.h"
#include "editors/ball/CBallPadCtrl.h"
#include "texts/Texts.h"

namespace quib {

CBallListCtrl::CBallListCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth)
    : CControl(window, number, left, top, newWidth, kRows * kRow) {
    takesWheel = true;
    captureOnClick = false;
}

void CBallListCtrl::Show(const QStringList& next, int selectedBall) {
    if (next == states && selectedBall == selected) return;
    states = next;
    if (selectedBall != selected) first = std::clamp(first, selectedBall - kRows + 1, std::max(0, selectedBall));
    selected = selectedBall;
    first = std::clamp(first, 0, std::max(0, static_cast<int>(states.size()) - kRows));
    Refresh();
}

void CBallListCtrl::Draw() {
    Canvas().Fill(Rectangle(), Colour("panel"));
    for (int row = 0; row < kRows && first + row < states.size(); ++row) {
        const int ball = first + row;
        const QRectF area(X(), Y() + row * kRow, Width(), kRow - 4);
        if (ball == selected) Canvas().FillRound(area, 3, Colour("panelRaised"));
        DrawBall(Canvas(), QPointF(area.left() + 13, area.center().y()), 8, ball);
        Canvas().Text(area.adjusted(28, 0, -60, 0), Text("Ball %1").arg(ball + 1),
                      Colour(ball == selected ? "text" : "textMuted"), 11, Qt::AlignLeft | Qt::AlignVCenter, true);
        Canvas().Text(area.adjusted(70, 0, -6, 0), states[ball], Colour("textMuted"), 10,
                      Qt::AlignRight | Qt::AlignVCenter);
    }
}

void CBallListCtrl::OnLButtonDown(int /*px*/, int py, int /*button*/) {
    const int ball = first + (py - Y()) / kRow;
    if (ball >= 0 && ball < states.size() && onSelect) onSelect(ball);
}

ControlPart CBallListCtrl::PartAt(int part) const {
    const QRect area(X(), Y() + (part - first) * kRow, Width(), kRow - 4);
    return {Text("Ball %1").arg(part + 1), states.value(part), area.intersected(Rectangle()), part == selected};
}

void CBallListCtrl::RevealPart(int part) {
    first = std::clamp(first, std::max(0, part - kRows + 1), part);
    Refresh();
}

void CBallListCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    const int most = std::max(0, static_cast<int>(states.size()) - kRows);
    first = std::clamp(first - static_cast<int>(std::lround(NotchesOf(word))), 0, most);
    Refresh();
}

}  // namespace quib
