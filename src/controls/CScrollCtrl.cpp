// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CScrollCtrl.h"

#include <algorithm>

#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr float kShortestThumb = 20;  // pixels
}

CScrollCtrl::CScrollCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                         CValue* bound, bool isVertical)
    : CControl(window, number, left, top, newWidth, newHeight, bound), vertical(isVertical) {
    takesWheel = true;
    hoverLook = true;
    maximum = 0;
}

void CScrollCtrl::SetRange(float newWhole, float newPage) {
    whole = std::max(1.0F, newWhole);
    page = std::clamp(newPage, 1.0F, whole);
    maximum = whole - page;
    Update(false, false);
}

void CScrollCtrl::Resize(int newWidth, int newHeight) { SetSize(newWidth, newHeight); }

float CScrollCtrl::ThumbLength() const noexcept {
    return std::min(Length(), std::max(kShortestThumb, Length() * page / whole));
}

float CScrollCtrl::ThumbStart() const noexcept { return (Length() - ThumbLength()) * Share(); }

void CScrollCtrl::OnLButtonDown(int px, int py, int button) {
    if (button != 0 || Value() == nullptr) return;
    const auto place = static_cast<float>(vertical ? py - Y() : px - X());
    if (place < ThumbStart() || place > ThumbStart() + ThumbLength()) {
        SetValueAndUpdate(true, true, ValueNow() + (place < ThumbStart() ? -page : page));
        return;
    }
    dragging = true;
    drag.Begin(ValueNow(), vertical ? py : px);
}

void CScrollCtrl::OnMouseMove(int px, int py) {
    if (!dragging) return;
    const float room = std::max(1.0F, Length() - ThumbLength());
    SetValueAndUpdate(true, true, drag.Move(vertical ? py : px, maximum / room, false));
}

void CScrollCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) {
    dragging = false;
    Update(false, true);
}

void CScrollCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    SetValueAndUpdate(true, true, ValueNow() - NotchesOf(word) * wheelUnits);
}

QString CScrollCtrl::ShownText() const { return Text("Scroll bar"); }

void CScrollCtrl::Draw() {
    const CPalette& palette = Palette();
    Canvas().Fill(Rectangle(), palette.Colour(QStringLiteral("well")));
    if (maximum <= 0) return;
    const qreal start = static_cast<qreal>(ThumbStart());
    const qreal length = static_cast<qreal>(ThumbLength());
    const QRectF thumb = vertical ? QRectF(X() + 2, Y() + start + 1, Width() - 4, length - 2)
                                  : QRectF(X() + start + 1, Y() + 2, length - 2, Height() - 4);
    const QRgb colour = palette.Colour(dragging  ? QStringLiteral("textDim")
                                       : hovered ? QStringLiteral("knobHover")
                                                 : QStringLiteral("knob"));
    Canvas().FillRound(thumb, std::min(thumb.width(), thumb.height()) / 2, colour);
}

}  // namespace quib
