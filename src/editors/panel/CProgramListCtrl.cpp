// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CProgramListCtrl.h"

#include <algorithm>
#include <utility>

#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"
#include "editors/panel/PanelLook.h"

namespace quib {

namespace {

constexpr int kWheelRows = 3;

}  // namespace

CProgramListCtrl::CProgramListCtrl(CWinControl& window, const QRect& place, QStringList programNames)
    : CControl(window, 0, place.x(), place.y(), place.width(), place.height()), names(std::move(programNames)) {
    takesWheel = true;
    captureOnClick = false;
    SetFilter({});
}

void CProgramListCtrl::SetFilter(const QString& text) {
    rows.clear();
    for (int program = 0; program < names.size(); ++program) {
        if (text.isEmpty() || names[program].contains(text, Qt::CaseInsensitive)) rows.push_back(program);
    }
    Scroll(0);
    Update(false, true);
}

void CProgramListCtrl::Scroll(int firstRow) {
    first = std::clamp(firstRow, 0, std::max(0, static_cast<int>(rows.size()) - RowsInSight()));
}

void CProgramListCtrl::Select(int program) {
    if (std::exchange(selected, program) == program) return;
    const auto row = static_cast<int>(std::find(rows.begin(), rows.end(), program) - rows.begin());
    if (row < static_cast<int>(rows.size())) Scroll(std::clamp(first, row - RowsInSight() + 1, row));
    Update(false, true);
}

int CProgramListCtrl::RowAt(int py) const {
    const int row = first + (py - Y()) / kRow;
    return py >= Y() && row < static_cast<int>(rows.size()) ? row : -1;
}

void CProgramListCtrl::OnMouseMove(int /*px*/, int py) {
    const int now = RowAt(py);
    if (std::exchange(under, now) != now) Update(false, true);
}

void CProgramListCtrl::OnMouseLeave() {
    under = -1;
    Update(false, true);
}

void CProgramListCtrl::OnLButtonDown(int /*px*/, int py, int /*button*/) {
    const int row = RowAt(py);
    if (row >= 0 && onChoose) onChoose(rows[static_cast<std::size_t>(row)]);
}

void CProgramListCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    Scroll(first - static_cast<int>(NotchesOf(word) * kWheelRows));
    Update(false, true);
}

void CProgramListCtrl::OnKeyDown(int key) {
    if (!hovered) return;
    const int step = key == virtualKey::kUp ? -1 : key == virtualKey::kDown ? 1 : 0;
    const auto row = std::find(rows.begin(), rows.end(), selected) - rows.begin() + step;
    if (step == 0 || row < 0 || row >= static_cast<std::ptrdiff_t>(rows.size()) || !onChoose) return;
    onChoose(rows[static_cast<std::size_t>(row)]);
}

void CProgramListCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    Canvas().Box(QRectF(Rectangle()), 3, Colour("well"), Colour("edge"));
    const int last = std::min(static_cast<int>(rows.size()), first + RowsInSight());
    for (int row = first; row < last; ++row) {
        const int program = rows[static_cast<std::size_t>(row)];
        const QRectF area(X() + 2, Y() + (row - first) * kRow + 1, Width() - 4, kRow - 2);
        const bool chosen = program == selected;
        if (chosen) Canvas().FillRound(area, 2, Palette().Accent(section));
        if (!chosen && row == under) Canvas().FillRound(area, 2, Colour("panelRaised"));
        Canvas().Text(area.adjusted(8, 0, -8, 0), names[program], Colour(chosen ? "onAccent" : "text"), 12,
                      Qt::AlignLeft | Qt::AlignVCenter, chosen);
    }
}

}  // namespace quib
