// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CLaneListCtrl.h"

#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "controls/VirtualKeys.h"

namespace quib {

CLaneListCtrl::CLaneListCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight)
    : CControl(window, number, left, top, newWidth, newHeight) {
    takesWheel = true;
    captureOnClick = false;
}

void CLaneListCtrl::Resize(int newWidth, int newHeight) {
    SetSize(newWidth, newHeight);
    ScrollTo(scroll);
}

void CLaneListCtrl::Show(std::vector<Row> next, const std::optional<LaneKey>& selected) {
    rows = std::move(next);
    chosen = selected;
    ScrollTo(scroll);
    Refresh();
}

void CLaneListCtrl::ScrollTo(int pixels) {
    const int next = std::clamp(pixels, 0, std::max(0, WholeHeight() - Height()));
    if (next == scroll) return;
    scroll = next;
    Refresh();
    if (onScroll) onScroll();
}

int CLaneListCtrl::RowAt(int py) const {
    const int row = (py - Y() + scroll) / kRow;
    return row >= 0 && row < static_cast<int>(rows.size()) ? row : -1;
}

void CLaneListCtrl::Draw() {
    Canvas().Fill(Rectangle(), Colour("panel"));
    for (int row = scroll / kRow; row < static_cast<int>(rows.size()); ++row) {
        const int top = Y() + row * kRow - scroll;
        if (top >= Y() + Height()) break;
        DrawRow(rows[static_cast<std::size_t>(row)], top, row == litRow);
    }
}

void CLaneListCtrl::DrawRow(const Row& row, int top, bool lit) {
    const QRectF area(X(), top, Width(), kRow);
    const QRectF text = area.adjusted(row.key ? 28 : 12, 0, -60, 0);
    const QRectF right = area.adjusted(Width() - 60, 0, -8, 0);
    if (!row.key) {
        Canvas().Fill(QRectF(X(), top, Width(), 1), Colour("edge"));
        Canvas().Text(text, row.text, Colour("textMuted"), 10, Qt::AlignLeft | Qt::AlignVCenter, true);
        return Canvas().Text(right, row.right, Colour("textDim"), 10, Qt::AlignRight | Qt::AlignVCenter);
    }
    const QRgb accent = Palette().Accent(CLaneCatalog::SectionOf(*row.key));
    const bool isChosen = row.key == chosen;
    if (isChosen || lit) Canvas().Fill(area, Colour("panelRaised"));
    if (isChosen) Canvas().Fill(QRectF(X(), top, 3, kRow), accent);
    const QPointF dot(X() + 16, top + kRow / 2.0);
    Canvas().Ellipse(dot, 4, accent);
    if (!row.used) Canvas().Ellipse(dot, 2.5, Colour(isChosen || lit ? "panelRaised" : "panel"));
    Canvas().Text(text, row.text, Colour(row.used || isChosen ? "text" : "textMuted"), 10,
                  Qt::AlignLeft | Qt::AlignVCenter, row.used);
    Canvas().Text(right, row.right, Colour("textMuted"), 10, Qt::AlignRight | Qt::AlignVCenter);
}

void CLaneListCtrl::OnMouseMove(int /*px*/, int py) {
    const int row = RowAt(py);
    if (row == litRow) return;
    litRow = row;
    Refresh();
}

void CLaneListCtrl::OnLButtonDown(int /*px*/, int py, int /*button*/) {
    const int row = RowAt(py);
    if (row < 0) return;
    const auto key = rows[static_cast<std::size_t>(row)].key;
    if (key && onChoose) onChoose(*key);
}

ControlPart CLaneListCtrl::PartAt(int part) const {
    const Row& row = rows[static_cast<std::size_t>(part)];
    const QRect area(X(), Y() + part * kRow - scroll, Width(), kRow);
    return {row.text, row.right, area.intersected(Rectangle()), row.key && row.key == chosen};
}

int CLaneListCtrl::ChosenPart() const {
    const auto found = std::ranges::find_if(rows, [this](const Row& row) { return row.key && row.key == chosen; });
    return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

void CLaneListCtrl::RevealPart(int part) {
    ScrollTo(std::clamp(scroll, std::min(part, (part + 1) - Height() / kRow) * kRow, part * kRow));
}

void CLaneListCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    ScrollTo(scroll - static_cast<int>(std::lround(NotchesOf(word) * 3 * kRow)));
}

void CLaneListCtrl::OnMouseLeave() {
    litRow = -1;
    Refresh();
}

}  // namespace quib
