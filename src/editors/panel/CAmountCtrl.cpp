// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CAmountCtrl.h"

#include <algorithm>

#include "controls/CWinControl.h"
#include "editors/panel/CPanelValues.h"
#include "editors/panel/PanelLook.h"

namespace quib {

namespace {

constexpr float kCellPixels = 128;  // of a drag over the whole range
constexpr int kBarHeight = 6;
constexpr int kCaptionWidth = 40;

}  // namespace

CAmountCtrl::CAmountCtrl(CWinControl& window, const QRect& place, CPanelValues& panelValues, int number)
    : CControl(window, 0, place.x(), place.y(), place.width(), place.height()), values(panelValues), parameter(number) {
    hoverLook = true;
    takesWheel = true;
    takesDigits = true;
    doubleClickIsClick = false;
    doubleClickResets = true;
    values.Connect(*this, parameter);
}

QRectF CAmountCtrl::Bar() const {
    const int left = caption.isEmpty() ? 2 : kCaptionWidth;
    return QRectF(X() + left, Y() + (Height() - kBarHeight) / 2, Width() - left - 2, kBarHeight);
}

void CAmountCtrl::OnMouseMove(int px, int py) {
    if (enabled) Owner().setCursor(isCell ? Qt::SizeVerCursor : Qt::SizeHorCursor);
    if (!dragging) return;
    const float wayPixels = isCell ? kCellPixels : static_cast<float>(Bar().width());
    const float next = drag.Move(isCell ? -py : px, 1 / wayPixels, Owner().IsFine());
    SetValueAndUpdate(true, true, std::clamp(next, 0.0F, 1.0F));
    ShowValue();
}

void CAmountCtrl::OnLButtonDown(int px, int py, int /*button*/) {
    if (!enabled) return;
    dragging = true;
    if (!isCell && !Owner().IsFine()) {
        const qreal share = (px - Bar().left()) / Bar().width();
        SetValueAndUpdate(true, true, static_cast<float>(std::clamp(share, 0.0, 1.0)));
    }
    drag.Begin(ValueNow(), isCell ? -py : px);
    ShowValue();
}

void CAmountCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) {
    dragging = false;
    Update(false, true);
}

void CAmountCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) { TurnByWheel(word); }

void CAmountCtrl::OnMouseLeave() { Owner().unsetCursor(); }

void CAmountCtrl::TakeNumber(float number) {
    if (defaultValue && number == *defaultValue) return ChangeByUser(number);
    values.SetByText(parameter, QString::number(static_cast<double>(number)));
    Update(false, true);
}

void CAmountCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    if (!caption.isEmpty())
        Canvas().Text(QRectF(X(), Y(), kCaptionWidth - 4, Height()), caption, Colour("textMuted"), 10,
                      Qt::AlignLeft | Qt::AlignVCenter);
    isCell ? DrawCell(QRectF(Rectangle()).adjusted(1, 1, -1, -1)) : DrawBar(Bar());
}

void CAmountCtrl::DrawBar(const QRectF& bar) {
    const QRgb accent = enabled ? Palette().Accent(section) : Colour("edge");
    Canvas().FillRound(bar, 3, Colour("wellDeep"));
    const qreal from = bar.left() + bar.width() * static_cast<qreal>(zero);
    const qreal to = bar.left() + bar.width() * static_cast<qreal>(Share());
    const qreal left = std::min(from, to) - 1;
    Canvas().FillRound(QRectF(left, bar.top(), std::max(from, to) - left + 1, bar.height()), 2, accent);
}

void CAmountCtrl::DrawCell(const QRectF& cell) {
    Canvas().Box(cell, 3, Colour(hovered && enabled ? "well" : "wellDeep"), Colour("knobEdge"));
    if (Share() == zero) return Canvas().Text(cell, QStringLiteral("·"), Colour(enabled ? "textMuted" : "textOff"), 12);
    const float amount = zero > 0 ? (Share() - zero) / (1 - zero) : Share();
    QRectF fill = cell.adjusted(1, 1, -1, -1);
    fill.setWidth(std::max(2.0, fill.width() * std::min(1.0, std::abs(static_cast<qreal>(amount)))));
    Canvas().FillRound(fill, 2, WithOpacity(Palette().Accent(section), 0.55F));
    const QString text = ValueText();
    Canvas().Text(cell, text, Colour("text"), FittingHeight(text, cell.width() - 4, true, 11), Qt::AlignCenter, true);
}

}  // namespace quib
