// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CStepLedCtrl.h"

#include <algorithm>

#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kPageDotPitch = 10;
constexpr qreal kLeastFrame = 5;  // pixels of width from which a box has a frame
}  // namespace

CStepLedCtrl::CStepLedCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                           QRgb groundColour)
    : CControl(window, number, left, top, newWidth, newHeight), CTicked(window), ground(groundColour) {}

void CStepLedCtrl::SetStepCount(int newCount) {
    newCount = std::max(1, newCount);
    if (newCount == stepCount) return;
    stepCount = newCount;
    page = std::min(page, PageCount() - 1);
    takesWheel = PageCount() > 1;
    stale = true;
}

bool CStepLedCtrl::IsShownStep(int step) const noexcept {
    return step >= FirstStep() && step < std::min(stepCount, FirstStep() + kPageSteps);
}

bool CStepLedCtrl::TurnTo(int wanted) {
    wanted = std::clamp(wanted, 0, PageCount() - 1);
    if (wanted == page) return false;
    page = wanted;
    stale = true;
    return true;
}

void CStepLedCtrl::OnMouseWheel(int px, int py, std::uint32_t word) {
    if (held || !TurnTo(page + (NotchesOf(word) < 0 ? 1 : -1))) return;
    pageByHand = true;
    hoveredStep = StepAt(px, py);
}

void CStepLedCtrl::FollowPlaying(int step) {
    if (playing < 0 || step < 0) pageByHand = false;
    if (step >= 0 && !pageByHand && !held) TurnTo(step / kPageSteps);
}

QRectF CStepLedCtrl::LedArea(int step) const {
    // Whole pixels, as even as the width allows.
    const int boxes = RowBoxes();
    const auto edge = [this, boxes](int index) { return X() + index * Width() / boxes; };
    const int box = (step - FirstStep()) % boxes;
    const int row = (step - FirstStep()) / boxes;
    const int pitch = Width() / boxes;
    const int gap = pitch >= 12 ? 2 : pitch >= 4 ? 1 : 0;
    const int room = Height() - Head() - (RowCount() - 1) * 2;
    const int high = room / RowCount();
    return {qreal(edge(box)), qreal(Y() + Head() + row * (high + 2)),
            qreal(std::max(1, edge(box + 1) - edge(box) - gap)), qreal(high)};
}

int CStepLedCtrl::StepAt(int px, int py) const noexcept {
    const int boxes = RowBoxes();
    const int column = std::clamp((px - X()) * boxes / std::max(1, Width()), 0, boxes - 1);
    const int row = RowCount() == 2 && py - Y() - Head() >= (Height() - Head()) / 2 ? 1 : 0;
    const int last = std::min(stepCount, FirstStep() + kPageSteps) - 1;
    return std::clamp(FirstStep() + row * boxes + column, FirstStep(), last);
}

void CStepLedCtrl::Hover(int step) {
    const int before = std::exchange(hoveredStep, step);
    if (std::exchange(mouseIsOver, true) && before == step) return;
    RedrawLed(before);
    RedrawLed(step);
}

void CStepLedCtrl::OnMouseLeave() {
    mouseIsOver = false;
    RedrawLed(hoveredStep);
}

void CStepLedCtrl::OnLButtonDown(int px, int py, int button) {
    Hover(StepAt(px, py));
    if (button != 0) return;
    if (Owner().IsControlHeld()) {
        if (onRestart) onRestart(hoveredStep);
        return;
    }
    held = true;
    pressY = py;
    if (onPress) onPress(hoveredStep);
}

void CStepLedCtrl::OnMouseMove(int px, int py) {
    // Up and down is for the velocity of what is held.
    Hover(StepAt(px, held ? std::clamp(pressY, Y(), Y() + Height()) : py));
    if (held && pressed && onDrag) onDrag(hoveredStep, pressY - py);
}

void CStepLedCtrl::OnLButtonUp(int /*px*/, int /*py*/, int button) {
    if (button == 0 && std::exchange(held, false) && onRelease) onRelease();
}

void CStepLedCtrl::OnKeyDown(int virtualKey) {
    if (virtualKey == virtualKey::kEscape && std::exchange(held, false) && onCancel) onCancel();
}

void CStepLedCtrl::Tick() {
    if (!IsShown() || ShownRectangle().isEmpty()) return;
    const int now = playingStep ? playingStep() : -1;
    FollowPlaying(now);
    if (std::exchange(stale, false)) {
        playing = now;
        return Update(false, true);
    }
    if (now == playing || !Owner().HasBackBuffer()) return;
    const int before = std::exchange(playing, now);
    RedrawLed(before);
    RedrawLed(now);
}

void CStepLedCtrl::RedrawLed(int step) {
    if (!IsShownStep(step) || !IsShown() || !Owner().HasBackBuffer()) return;
    Canvas().SetClip(ShownRectangle());
    DrawLed(step, ColoursNow());
    const QRect area = LedArea(step).toAlignedRect();
    BlitRect(area.left(), area.top(), area.right() + 1, area.bottom() + 1);
}

ControlPart CStepLedCtrl::PartAt(int part) const {
    const int velocity = loudness ? loudness(part) : -1;
    return {Text("Step %1").arg(part + 1), velocity >= 0 ? Text("velocity %1").arg(velocity) : Text("empty"),
            IsShownStep(part) ? LedArea(part).toAlignedRect() : QRect(), velocity >= 0, velocity >= 0};
}

void CStepLedCtrl::RevealPart(int part) {
    hoveredStep = part;
    if (!TurnTo(part / kPageSteps)) return;
    pageByHand = true;
    Update(false, true);
}

// As a drag upwards on the box would do.
void CStepLedCtrl::Turn(int part, int notches, bool fine) {
    constexpr int kNotch = 5;
    if (part < 0 || !onPress || !onDrag || !onRelease || loudness(part) < 0) return;
    onPress(part);
    onDrag(part, notches * (fine ? 1 : kNotch));
    onRelease();
}

CStepLedCtrl::Colours CStepLedCtrl::ColoursNow() const {
    const CPalette& palette = Palette();
    return {palette.Colour(QStringLiteral("stepOff")), palette.Colour(QStringLiteral("stepBeat")),
            palette.Colour(QStringLiteral("stepEdge")), palette.Colour(QStringLiteral("text")),
            palette.Accent(section)};
}

void CStepLedCtrl::Draw() {
    Canvas().Fill(Rectangle(), ground);
    const Colours colours = ColoursNow();
    for (int step = FirstStep(); IsShownStep(step); ++step) DrawLed(step, colours);
    if (PageCount() > 1) DrawPages();
}

// As many as have room; of more the last one stands for the rest.
void CStepLedCtrl::DrawPages() {
    const int shown = std::min(PageCount(), Width() / kPageDotPitch);
    for (int dot = 0; dot < shown; ++dot) {
        const bool isThis = dot == std::min(page, shown - 1);
        Canvas().Fill(QRectF(X() + dot * kPageDotPitch, Y(), kPageDotPitch - 3, 2),
                      isThis ? Palette().Accent(section) : Palette().Colour(QStringLiteral("edge")));
    }
}

void CStepLedCtrl::DrawLed(int step, const Colours& colours) {
    const int velocity = loudness ? loudness(step) : -1;
    const QRectF area = LedArea(step);
    const bool plays = step == playing;
    Canvas().Fill(area, colours.edge);
    const QRectF inner = area.width() >= kLeastFrame ? area.adjusted(1, 1, -1, -1) : area;
    Canvas().Fill(inner, step / 4 % 2 == 0 ? colours.beat : colours.off);
    const QRgb lit = plays ? Mix(colours.accent, colours.light, 0.55F) : colours.accent;
    if (velocity >= 0) {
        // The quietest note is seen.
        const qreal high = std::max(2.0, std::round(area.height() * velocity / 127));
        Canvas().Fill({area.left(), area.bottom() - high, area.width(), high}, lit);
    } else if (holds && holds(step)) {
        Canvas().Fill({area.left(), area.bottom() - 2, area.width(), 2}, lit);
    }
    if (plays) DrawEdge(area, 2, colours.light);
    if (mouseIsOver && step == hoveredStep && !plays) DrawEdge(area, 1, colours.accent);
}

void CStepLedCtrl::DrawEdge(const QRectF& area, qreal wide, QRgb colour) {
    Canvas().Fill({area.left(), area.top(), area.width(), wide}, colour);
    Canvas().Fill({area.left(), area.bottom() - wide, area.width(), wide}, colour);
    Canvas().Fill({area.left(), area.top(), wide, area.height()}, colour);
    Canvas().Fill({area.right() - wide, area.top(), wide, area.height()}, colour);
}

}  // namespace quib
