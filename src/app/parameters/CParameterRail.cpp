// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/parameters/CParameterRail.h"

#include <algorithm>
#include <utility>

#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "controls/VirtualKeys.h"

namespace quib {

CParameterRail::CParameterRail(CWinControl& window, const QRect& place)
    : CControl(window, 0, place.x(), place.y(), place.width(), place.height()) {
    takesWheel = true;
    captureOnClick = false;
}

void CParameterRail::Show(std::vector<Row> next, int chosenRow) {
    if (next == rows && chosenRow == chosen) return;
    rows = std::move(next);
    chosen = chosenRow;
    Scroll(first);
    Update(false, true);
}

void CParameterRail::Scroll(int firstRow) {
    first = std::clamp(firstRow, 0, std::max(0, static_cast<int>(rows.size()) - Height() / kRow));
}

QRectF CParameterRail::Area(int row) const { return QRectF(X(), Y() + (row - first) * kRow, Width(), kRow); }

int CParameterRail::RowAt(int py) const {
    const int row = first + (py - Y()) / kRow;
    return row < static_cast<int>(rows.size()) && rows[static_cast<std::size_t>(row)].count >= 0 ? row : -1;
}

ControlPart CParameterRail::PartAt(int part) const {
    const Row& row = rows[static_cast<std::size_t>(part)];
    return {row.text, row.count < 0 ? QString() : QString::number(row.count), Area(part).toRect(), part == chosen};
}

void CParameterRail::Activate(int part) {
    if (part >= 0 && part < PartCount() && rows[static_cast<std::size_t>(part)].count >= 0 && onChoose) onChoose(part);
}

void CParameterRail::OnMouseMove(int /*px*/, int py) {
    const int now = RowAt(py);
    if (std::exchange(under, now) != now) Update(false, true);
}

void CParameterRail::OnMouseLeave() {
    under = -1;
    Update(false, true);
}

void CParameterRail::OnLButtonDown(int /*px*/, int py, int /*button*/) { Activate(RowAt(py)); }

void CParameterRail::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    Scroll(first - static_cast<int>(NotchesOf(word) * 3));
    Update(false, true);
}

void CParameterRail::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    const int last = std::min(static_cast<int>(rows.size()), first + Height() / kRow);
    for (int number = first; number < last; ++number) {
        const Row& row = rows[static_cast<std::size_t>(number)];
        const QRectF area = Area(number);
        if (row.count < 0) {
            const qreal end = area.left() + 10 + CCanvas::TextWidth(row.text, 10, true);
            Canvas().Text(area.adjusted(10, 2, 0, 0), row.text, Colour("textMuted"), 10,
                          Qt::AlignLeft | Qt::AlignVCenter, true);
            Canvas().Line(end + 8, area.center().y() + 1, area.right() - 6, area.center().y() + 1, Colour("edge"));
            continue;
        }
        const bool isChosen = number == chosen;
        if (isChosen) Canvas().FillRound(area, 3, Palette().Accent(section));
        if (!isChosen && number == under) Canvas().FillRound(area, 3, Colour("panelRaised"));
        const char* const plain = row.count > 0 ? "text" : "textMuted";
        const QRgb ink = Colour(isChosen ? "onAccent" : plain);
        const bool marked = row.glyph >= 0;
        if (marked)
            Canvas().Glyph(Skin(), row.glyph, area.topLeft() + QPointF(17, kRow / 2.0),
                           isChosen ? ink : Palette().Accent(row.section));
        Canvas().Text(area.adjusted(marked ? 28 : 10, 0, -34, 0), row.text, ink, 12, Qt::AlignLeft | Qt::AlignVCenter,
                      isChosen);
        Canvas().Text(area.adjusted(100, 0, -8, 0), QString::number(row.count),
                      Colour(isChosen ? "onAccent" : "textMuted"), 11, Qt::AlignRight | Qt::AlignVCenter);
    }
}

}  // namespace quib
