// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/ball/CBallAssignmentsCtrl.h"

#include <algorithm>
#include <cmath>

#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "controls/SkinNumbers.h"
#include "controls/VirtualKeys.h"

namespace quib {

namespace {

constexpr int kBarLeft = 128;
constexpr int kBarWidth = 152;
constexpr int kTextLeft = 292;
constexpr int kBinWidth = 26;

}  // namespace

CBallAssignmentsCtrl::CBallAssignmentsCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth,
                                           int newHeight)
    : CControl(window, number, left, top, newWidth, newHeight), colour(Colour("mix")) {
    takesWheel = true;
}

void CBallAssignmentsCtrl::Show(std::vector<Row> next) {
    rows = std::move(next);
    first = std::clamp(first, 0, std::max(0, static_cast<int>(rows.size()) - 1));
    Refresh();
}

void CBallAssignmentsCtrl::ShowValues(const std::vector<float>& values) {
    bool changed = false;
    for (std::size_t row = 0; row < std::min(rows.size(), values.size()); ++row) {
        changed = changed || std::abs(rows[row].now - values[row]) > 0.002F;
        rows[row].now = values[row];
    }
    if (changed) Refresh();
}

double CBallAssignmentsCtrl::BarX(float share) const {
    return X() + kBarLeft + static_cast<double>(std::clamp(share, 0.0F, 1.0F)) * kBarWidth;
}

int CBallAssignmentsCtrl::RowAt(int py) const {
    const int row = (py - Y()) / kRow + first;
    return py >= Y() && row < static_cast<int>(rows.size()) ? row : -1;
}

void CBallAssignmentsCtrl::Draw() {
    Canvas().Fill(Rectangle(), Colour("panel"));
    int top = Y();
    for (std::size_t row = static_cast<std::size_t>(first); row < rows.size() && top < Y() + Height(); ++row) {
        DrawRow(rows[row], top);
        top += kRow;
    }
    if (hint.isEmpty() || top >= Y() + Height()) return;
    const QRectF line(X() + 8, top + 1, Width() - 16, 22);
    Canvas().Box(line, 3, Colour("well"), colour);
    Canvas().Text(line.adjusted(8, 0, -8, 0), hint, colour, 10, Qt::AlignLeft | Qt::AlignVCenter);
}

void CBallAssignmentsCtrl::DrawRow(const Row& row, int top) {
    const QRectF cap(X() + 8, top + 3, 20, 20);
    DrawCap(Canvas(), cap, EState::kNormal, colour);
    Canvas().Text(cap, row.axis == 0 ? QStringLiteral("X") : QStringLiteral("Y"), colour, 10, Qt::AlignCenter, true);
    Canvas().Text(QRectF(X() + 36, top, kBarLeft - 44, kRow), row.name, Colour("text"), 10,
                  Qt::AlignLeft | Qt::AlignVCenter, true);
    const double middle = top + kRow / 2.0;
    Canvas().Box(QRectF(X() + kBarLeft, middle - 6, kBarWidth, 12), 3, Colour("well"), Colour("edge"));
    const auto [left, right] = std::minmax({BarX(row.low), BarX(row.high)});
    Canvas().Fill(QRectF(left, middle - 3, right - left, 6), WithOpacity(colour, 0.5F));
    if (row.now >= 0) Canvas().Fill(QRectF(BarX(row.now) - 1, middle - 9, 2, 18), Colour("thumbHover"));
    Canvas().Box(QRectF(BarX(row.low) - 4, middle - 8, 8, 16), 2, Colour("well"), colour, 2);
    Canvas().Box(QRectF(BarX(row.high) - 4, middle - 8, 8, 16), 2, colour, colour, 2);
    Canvas().Text(QRectF(X() + kTextLeft, top, Width() - kTextLeft - kBinWidth - 4, kRow), row.range, Colour("text"),
                  10, Qt::AlignLeft | Qt::AlignVCenter);
    Canvas().Glyph(Skin(), picture::kGlyphBin, QPointF(X() + Width() - 17, middle), Colour("textMuted"));
}

void CBallAssignmentsCtrl::OnLButtonDown(int px, int py, int button) {
    const int row = RowAt(py);
    if (row < 0 || button != 0) return;
    const Row& hit = rows[static_cast<std::size_t>(row)];
    const int left = px - X();
    if (left < 32) return onOtherAxis(hit);
    if (left >= Width() - kBinWidth) return onRemove(hit);
    if (left < kBarLeft - 6 || left > kBarLeft + kBarWidth + 6) return;
    dragged = row;
    part = std::abs(px - BarX(hit.low)) < std::abs(px - BarX(hit.high)) ? EPart::kLow : EPart::kHigh;
    OnMouseMove(px, py);
}

void CBallAssignmentsCtrl::OnMouseMove(int px, int /*py*/) {
    if (dragged < 0 || dragged >= static_cast<int>(rows.size())) return;
    Row& row = rows[static_cast<std::size_t>(dragged)];
    const float share = std::clamp(static_cast<float>(px - X() - kBarLeft) / kBarWidth, 0.0F, 1.0F);
    (part == EPart::kLow ? row.low : row.high) = share;
    onSpan(row, row.low, row.high);
}

void CBallAssignmentsCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) {
    if (dragged < 0) return;
    dragged = -1;
    onSpanDone();
}

void CBallAssignmentsCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    const int shown = std::max(1, Height() / kRow);
    const int most = std::max(0, static_cast<int>(rows.size()) - shown);
    first = std::clamp(first - static_cast<int>(std::lround(NotchesOf(word))), 0, most);
    Refresh();
}

}  // namespace quib
