// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CFaderCtrl.h"

#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"

namespace quib {

const FaderPictures kUprightFader = {picture::kFaderThumbUpright, picture::kFaderTrackUpright,
                                     picture::kFaderFilledUpright};
const FaderPictures kLevelFader = {picture::kFaderThumbLevel, picture::kFaderTrackLevel, picture::kFaderFilledLevel};

namespace {
constexpr float kSecondCatch = 0.03F;
constexpr qreal kBarWidth = 12;
constexpr int kCap = 4;  // pixels at each end of a track or bar that are never stretched
}  // namespace

CFaderCtrl::CFaderCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                       CValue* bound, bool isVertical)
    : CControl(window, number, left, top, newWidth, newHeight, bound),
      pictures(isVertical ? kUprightFader : kLevelFader),
      vertical(isVertical) {
    takesWheel = true;
    hoverLook = true;
    doubleClickIsClick = false;
    doubleClickResets = true;
    takesDigits = true;
}

int CFaderCtrl::ThumbSize() const {
    const QSize size = Skin().Size(pictures.thumb);
    return vertical ? size.height() : size.width();
}

int CFaderCtrl::Travel() const { return std::max(1, (vertical ? Height() : Width()) - ThumbSize()); }

float CFaderCtrl::ThumbPosition() const {
    const auto travel = static_cast<float>(Travel());
    return vertical ? static_cast<float>(Y()) + travel * (1 - Share()) : static_cast<float>(X()) + travel * Share();
}

// Where along the axis the click lies, seen from the thumb and the bar beyond it.
CFaderCtrl::ETarget CFaderCtrl::TargetAt(int px, int py) const {
    if (!secondBarOn || secondValue == nullptr) return ETarget::kMain;
    const int thumb = ThumbSize();
    const int bar = static_cast<int>(std::abs(secondValue->Get()) * static_cast<float>(Travel()));
    const int margin = (thumb + bar) / 20 + 2;
    const int thumbStart = static_cast<int>(static_cast<float>(Travel()) * Share());
    const int offset = vertical ? Y() + Height() - py : px - X();
    if (offset < thumbStart + margin) return ETarget::kSecondDown;
    if (offset > thumbStart + thumb + bar - margin) return ETarget::kSecondUp;
    return ETarget::kMain;
}

void CFaderCtrl::OnLButtonDown(int px, int py, int /*button*/) {
    if (Value() == nullptr || !enabled) return;
    dragging = true;
    target = TargetAt(px, py);
    secondBefore = secondStart = secondValue != nullptr ? secondValue->Get() : 0;
    drag.Begin(target == ETarget::kMain ? ValueNow() : secondStart, Along(px, py));
    Update(false, true);
    ShowValue();
}

void CFaderCtrl::OnMouseMove(int px, int py) {
    if (enabled) Owner().setCursor(Qt::PointingHandCursor);
    if (!dragging) return;
    if (target == ETarget::kMain) {
        DragMain(px, py);
    } else {
        DragSecond(px, py);
    }
}

void CFaderCtrl::DragMain(int px, int py) {
    float next = drag.Move(Along(px, py), (maximum - minimum) / static_cast<float>(Travel()), Owner().IsFine());
    if (detentOn) next = WithDetent(next, detentValue, maximum);
    SetValueAndUpdate(true, true, std::clamp(next, minimum, maximum));
    ShowValue();
}

void CFaderCtrl::DragSecond(int px, int py) {
    const float perPixel = (target == ETarget::kSecondUp ? 1.0F : -1.0F) / static_cast<float>(Travel());
    float next = drag.Move(Along(px, py), perPixel, Owner().IsFine());
    // The end that is dragged has come out on the other side of the thumb: the bar grows again from there.
    if (next * secondStart < 0) {
        target = target == ETarget::kSecondUp ? ETarget::kSecondDown : ETarget::kSecondUp;
        next = -next;
        drag.Begin(next, Along(px, py));
    }
    next = std::clamp(next, -1.0F, 1.0F);
    if (std::abs(next) < kSecondCatch) next = 0;
    secondValue->Set(next);
    Update(true, true);
    Owner().ShowBubble(*this, formatSecond ? formatSecond(next) : QString::number(std::lround(next * 100)) + u'%');
}

void CFaderCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) {
    const bool second = dragging && target != ETarget::kMain;
    dragging = false;
    Update(false, true);
    if (second && onSecondGesture && secondValue->Get() != secondBefore) onSecondGesture(*this, secondBefore);
}

bool CFaderCtrl::HasChanged() const {
    return CControl::HasChanged() || (secondValue != nullptr && secondValue->Get() != drawnSecond);
}

void CFaderCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) { TurnByWheel(word); }

void CFaderCtrl::OnMouseLeave() { Owner().unsetCursor(); }

// --- Drawing --------------------------------------------------------------------------------------------

void CFaderCtrl::Draw() {
    drawnSecond = secondValue != nullptr ? secondValue->Get() : 0;
    const float thumbStart = ThumbPosition();
    Canvas().Fill(Rectangle(), backgroundColour);
    DrawTrack(thumbStart);
    const EState state = !enabled ? EState::kDisabled : dragging ? EState::kPressed : PlainState();
    const SkinBitmap& thumb = Skin().Bitmap(pictures.thumb, state, section);
    if (vertical) {
        Canvas().Blit(thumb, X() + (Width() - thumb.width) / 2.0, static_cast<qreal>(thumbStart));
    } else {
        Canvas().Blit(thumb, static_cast<qreal>(thumbStart), Y() + (Height() - thumb.height) / 2.0);
    }
    if (secondBarOn && secondValue != nullptr) DrawSecondBar(thumbStart);
    if (!label.isEmpty()) {
        Canvas().Text(QRectF(X(), Y() + Height() - 12, Width(), 12), label, Palette().Colour(QStringLiteral("text")));
    }
}

void CFaderCtrl::DrawTrack(float thumbStart) {
    const SkinBitmap& track = Skin().Bitmap(pictures.track, enabled ? EState::kNormal : EState::kDisabled, section);
    const SkinBitmap& filled = Skin().Bitmap(pictures.filled, enabled ? EState::kNormal : EState::kDisabled, section);
    const qreal inset = ThumbSize() / 2.0;
    const qreal middle = static_cast<qreal>(thumbStart) + inset;
    if (vertical) {
        const qreal left = X() + (Width() - track.width) / 2.0;
        const qreal low = Y() + Height() - inset + kCap;
        const qreal centre = fillFromCentre ? Y() + Height() / 2.0 : low;
        Canvas().BlitStretched(track, {left, Y() + inset - kCap, qreal(track.width), low - Y() - inset + kCap}, kCap);
        Canvas().BlitStretched(filled, {left, std::min(middle, centre), qreal(track.width), std::abs(centre - middle)},
                               kCap);
    } else {
        const qreal top = Y() + (Height() - track.height) / 2.0;
        const qreal from = X() + inset - kCap;
        const qreal centre = fillFromCentre ? X() + Width() / 2.0 : from;
        Canvas().BlitStretched(track, {from, top, Width() - 2 * inset + 2 * kCap, qreal(track.height)}, kCap);
        Canvas().BlitStretched(filled, {std::min(middle, centre), top, std::abs(middle - centre), qreal(track.height)},
                               kCap);
    }
}

void CFaderCtrl::DrawSecondBar(float thumbStart) {
    const float length = std::abs(secondValue->Get()) * static_cast<float>(Travel());
    if (length <= 0) return;
    const SkinBitmap& bar = Skin().Bitmap(picture::kFaderBar, EState::kNormal, section);
    const auto from = static_cast<qreal>(thumbStart);
    if (vertical) {
        Canvas().BlitStretched(bar, {X() + (Width() - kBarWidth) / 2.0, from - qreal(length), kBarWidth, qreal(length)},
                               kCap);
    } else {
        Canvas().BlitStretched(bar, {from + ThumbSize(), Y() + (Height() - kBarWidth) / 2.0, qreal(length), kBarWidth},
                               kCap);
    }
}

}  // namespace quib
