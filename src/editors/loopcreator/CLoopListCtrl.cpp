// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/loopcreator/CLoopListCtrl.h"

#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "controls/VirtualKeys.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kRow = 26;
constexpr int kHead = 22;
}  // namespace

CLoopListCtrl::CLoopListCtrl(CWinControl& window, int left, int topPlace)
    : CControl(window, 0U, left, topPlace, 424, 174) {
    takesWheel = true;
}

void CLoopListCtrl::Show(const std::vector<ListedLoop>& next, int nextChosen) {
    loops = next;
    chosen = nextChosen;
    const int rows = (Height() - kHead) / kRow;
    top = std::clamp(top, 0, std::max(0, static_cast<int>(loops.size()) - rows));
    Refresh();
}

void CLoopListCtrl::Draw() {
    Canvas().Fill(Rectangle(), Colour("wellDeep"));
    const auto text = [this](double left, double wide, double line, const QString& what, QRgb colour,
                             Qt::Alignment side) {
        Canvas().Text(QRectF(X() + left, line, wide, kRow), what, colour, 12, side | Qt::AlignVCenter);
    };
    const double head = Y() - 2;
    text(28, 180, head, Text("Name"), Colour("textMuted"), Qt::AlignLeft);
    text(210, 60, head, Text("From"), Colour("textMuted"), Qt::AlignRight);
    text(272, 40, head, Text("Bars"), Colour("textMuted"), Qt::AlignRight);
    text(314, 60, head, QStringLiteral("BPM"), Colour("textMuted"), Qt::AlignRight);
    if (loops.empty()) {
        return Canvas().Text(QRectF(X(), Y() + kHead, Width(), Height() - kHead),
                             Text("Enter adds the marked loop, Delete takes it off the list"), Colour("textMuted"), 12);
    }
    for (int row = top; row < static_cast<int>(loops.size()); ++row) {
        const double line = Y() + kHead + (row - top) * kRow;
        if (line + kRow > Y() + Height()) break;
        const ListedLoop& loop = loops[static_cast<std::size_t>(row)];
        const bool isChosen = row == chosen;
        if (isChosen) Canvas().Fill(QRectF(X(), line, Width(), kRow), Colour("pattern"));
        const QRgb colour = Colour(isChosen ? "ink" : "text");
        Canvas().Box(QRectF(X() + 8, line + 6, 14, 14), 3,
                     loop.wanted ? Colour(isChosen ? "ink" : "pattern") : Colour("well"), Colour("edge"));
        text(28, 180, line, loop.name, colour, Qt::AlignLeft);
        text(210, 60, line, QString::number(loop.bar, 'f', 0), colour, Qt::AlignRight);
        text(272, 40, line, QString::number(loop.cut.beats / 4.0), colour, Qt::AlignRight);
        text(314, 60, line, QString::number(loop.cut.tempo, 'f', 2), colour, Qt::AlignRight);
        text(376, 44, line, loop.state, colour, Qt::AlignRight);
    }
}

void CLoopListCtrl::OnLButtonDown(int px, int py, int button) {
    const int row = top + (py - Y() - kHead) / kRow;
    if (button != 0 || py < Y() + kHead || row >= static_cast<int>(loops.size())) return;
    const bool isCheck = px < X() + 26;
    if (isCheck && onWanted) onWanted(row);
    if (!isCheck && onChoose) onChoose(row);
}

void CLoopListCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    top -= static_cast<int>(std::lround(NotchesOf(word)));
    Show(std::vector<ListedLoop>(loops), chosen);
}

}  // namespace quib
