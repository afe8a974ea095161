// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CProgramListCtrl.h"

#include <algorithm>
#include <utility>

#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"
#include "editors/panel/PanelLook.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kWheelRows = 3;

}  // namespace

CProgramListCtrl::CProgramListCtrl(CWinControl& window, const QRect& place, QStringList programNames,
                                   QStringList userNames)
    : CControl(window, 0, place.x(), place.y(), place.width(), place.height()),
      names(std::move(programNames)),
      user(std::move(userNames)) {
    takesWheel = true;
    captureOnClick = false;
    SetFilter({});
}

void CProgramListCtrl::SetFilter(const QString& text) {
    rows.clear();
    const auto holds = [&text](const QString& one) {
        return text.isEmpty() || one.contains(text, Qt::CaseInsensitive);
    };
    for (int program = 0; showsOwn && program < names.size(); ++program) {
        if (holds(names[program]) && (!isWanted || isWanted(names[program]))) rows.push_back(program);
    }
    std::vector<int> below;
    for (int index = 0; showsUser && index < user.size(); ++index) {
        if (holds(user[index])) below.push_back(kFirstUser - index);
    }
    if (!below.empty()) rows.push_back(kHeading);
    rows.insert(rows.end(), below.begin(), below.end());
    Scroll(0);
    Update(false, true);
}

QString CProgramListCtrl::NameOf(int row) const { return row >= 0 ? names[row] : user[kFirstUser - row]; }

void CProgramListCtrl::Choose(int row) {
    if (row >= 0 && onChoose) onChoose(row);
    if (row <= kFirstUser && onChooseUser) onChooseUser(kFirstUser - row);
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
    if (row >= 0) Choose(rows[static_cast<std::size_t>(row)]);
}

void CProgramListCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    Scroll(first - static_cast<int>(NotchesOf(word) * kWheelRows));
    Update(false, true);
}

void CProgramListCtrl::OnKeyDown(int key) {
    if (!hovered) return;
    const int step = key == virtualKey::kUp ? -1 : key == virtualKey::kDown ? 1 : 0;
    const auto row = std::find(rows.begin(), rows.end(), selected) - rows.begin() + step;
    if (step != 0 && row >= 0 && row < static_cast<std::ptrdiff_t>(rows.size()))
        Choose(rows[static_cast<std::size_t>(row)]);
}

void CProgramListCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    Canvas().Box(QRectF(Rectangle()), 3, Colour("well"), Colour("edge"));
    const int last = std::min(static_cast<int>(rows.size()), first + RowsInSight());
    for (int row = first; row < last; ++row) {
        const int program = rows[static_cast<std::size_t>(row)];
        const QRectF area(X() + 2, Y() + (row - first) * kRow + 1, Width() - 4, kRow - 2);
        if (program == kHeading) {
            const QString heading = Text("MINE");
            const qreal end = area.left() + 8 + CCanvas::TextWidth(heading, 10, true);
            Canvas().Text(area.adjusted(8, 4, 0, 0), heading, Colour("textMuted"), 10, Qt::AlignLeft | Qt::AlignVCenter,
                          true);
            Canvas().Line(end + 8, area.center().y() + 2, area.right() - 8, area.center().y() + 2, Colour("edge"));
            continue;
        }
        const bool chosen = program == selected;
        if (chosen) Canvas().FillRound(area, 2, Palette().Accent(section));
        if (!chosen && row == under) Canvas().FillRound(area, 2, Colour("panelRaised"));
        Canvas().Text(area.adjusted(8, 0, -8, 0), NameOf(program), Colour(chosen ? "onAccent" : "text"), 12,
                      Qt::AlignLeft | Qt::AlignVCenter, chosen);
    }
}

}  // namespace quib
