// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CKnobCtrl.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"

namespace quib {

namespace {

constexpr float kPi = std::numbers::pi_v<float>;
constexpr float kFullTurn = 2 * kPi;
constexpr float kDetentTurn = 5.9341197F;    // 340 degrees: the way of the value when there is a detent
constexpr float kDetentWidth = 0.34906587F;  // 20 degrees: the way on which the detent holds
constexpr int kCentreRadius = 8;             // pixels
constexpr float kRangePerPixel = 0.0078125F;
constexpr int kLabelHeight = 12;

}  // namespace

CKnobCtrl::CKnobCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                     CValue* bound)
    : CControl(window, number, left, top, newWidth, newHeight, bound) {
    takesWheel = true;
    hoverLook = true;
    doubleClickIsClick = false;
    doubleClickResets = true;
    takesDigits = true;
}

int CKnobCtrl::Side() const noexcept { return std::min(Width(), Height() - (HasText() ? kLabelHeight : 0)); }

QPoint CKnobCtrl::FromCentre(int px, int py) const noexcept { return {px - X() - Width() / 2, py - Y() - CentreY()}; }

void CKnobCtrl::OnLButtonDown(int px, int py, int /*button*/) {
    if (Value() == nullptr || !enabled) return;
    dragging = true;
    previous = FromCentre(px, py);
    const bool alwaysLinear = Owner().Settings().ReadSettingInt("Settings", "VerticalMovingKnob", 0) == 1;
    centreMode = alwaysLinear || QPoint::dotProduct(previous, previous) < kCentreRadius * kCentreRadius;
    Owner().setCursor(centreMode ? Qt::SizeAllCursor : Qt::PointingHandCursor);
    drag.Begin(ValueNow(), -py);
    angle = AngleOfValue();
    Update(false, true);
    ShowValue();
}

void CKnobCtrl::OnMouseMove(int px, int py) {
    if (!dragging) {
        if (enabled) Owner().setCursor(Qt::PointingHandCursor);
        return;
    }
    if (centreMode) {
        DragCentre(py);
    } else {
        DragRotary(px, py);
    }
    Update(true, true);
    ShowValue();
}

void CKnobCtrl::DragCentre(int py) {
    float next = std::clamp(drag.Move(-py, (maximum - minimum) * kRangePerPixel, Owner().IsFine()), minimum, maximum);
    if (detentOn) next = WithDetent(next, detentValue, maximum);
    Value()->Set(next);
}

// The angle between the last and the present direction of the mouse, seen from the centre.
void CKnobCtrl::DragRotary(int px, int py) {
    const QPoint now = FromCentre(px, py);
    const int dot = QPoint::dotProduct(previous, now);
    if (dot == 0) return;
    const int cross = previous.x() * now.y() - previous.y() * now.x();
    const float turned = std::atan2(static_cast<float>(cross), static_cast<float>(dot));
    previous = now;
    const float share = Owner().IsFine() ? 0.1F : 1.0F;
    angle = std::clamp(angle + turned * share * kPi / (kPi - kGapAngle), 0.0F, kFullTurn);
    Value()->Set(std::clamp(ValueOfAngle(angle), minimum, maximum));
}

float CKnobCtrl::AngleOfValue() const noexcept {
    if (!detentOn) return Share() * kFullTurn;
    const float detentAngle = (detentValue - minimum) * kDetentTurn / (maximum - minimum);
    const float valueAngle = Share() * kDetentTurn;
    return valueAngle > detentAngle ? valueAngle + kDetentWidth : valueAngle;
}

float CKnobCtrl::ValueOfAngle(float turned) const noexcept {
    if (!detentOn) return minimum + (maximum - minimum) * turned / kFullTurn;
    const float detentAngle = (detentValue - minimum) * kDetentTurn / (maximum - minimum);
    float result = turned;
    if (turned > detentAngle) result = std::max(turned - kDetentWidth, detentAngle);
    return minimum + (maximum - minimum) * result / kDetentTurn;
}

void CKnobCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) {
    dragging = false;
    Owner().unsetCursor();
    Update(false, true);
}

void CKnobCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) { TurnByWheel(word); }

void CKnobCtrl::OnMouseLeave() { Owner().unsetCursor(); }

void CKnobCtrl::Draw() {
    constexpr qreal kGapDegrees = 30;
    Canvas().Fill(Rectangle(), backgroundColour);
    const qreal side = Side();
    const QPointF centre(X() + Width() / 2.0, HasText() ? Y() + side / 2.0 : Y() + Height() / 2.0);
    const EState state = !enabled ? EState::kDisabled : dragging ? EState::kPressed : PlainState();
    const qreal radius = side / 2 - 2;
    const auto place = [](qreal share) { return 180 + kGapDegrees + share * (360 - 2 * kGapDegrees); };
    Canvas().Arc(centre, radius, place(0), place(1), Palette().Colour(QStringLiteral("wellDeep")), 2.5);
    const QRgb accent = enabled ? Palette().Accent(section) : Palette().Colour(QStringLiteral("edge"));
    const qreal share = static_cast<qreal>(Share());
    if (const qreal from = fillFromCentre ? 0.5 : 0; from != share) {
        Canvas().Arc(centre, radius, place(from), place(share), accent, 2.5);
    }
    const int cap = Side() - 8;
    Canvas().Blit(Skin().BitmapOfSide(picture::kKnob, cap, state, section), centre.x() - cap / 2.0,
                  centre.y() - cap / 2.0);
    Canvas().BlitTurned(Skin().BitmapOfSide(picture::kKnobPointer, cap, state, section), centre, place(share));
    if (!HasText()) return;
    const QString below = valueBelow ? ValueText() : label;
    Canvas().Text(QRectF(X() - 4, Y() + Height() - kLabelHeight, Width() + 8, kLabelHeight), below,
                  Palette().Colour(valueBelow ? QStringLiteral("text") : QStringLiteral("textDim")),
                  valueBelow ? 11 : 10);
}

}  // namespace quib
