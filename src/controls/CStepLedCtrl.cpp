// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CStepLedCtrl.h"

#include <algorithm>

#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"

namespace quib {

CStepLedCtrl::CStepLedCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                           QRgb groundColour)
    : CControl(window, number, left, top, newWidth, newHeight), CTicked(window), ground(groundColour) {}

void CStepLedCtrl::SetStepCount(int newCount) {
    newCount = std::max(1, newCount);
    if (newCount == stepCount) return;
    stepCount = newCount;
    stale = true;
}

QRectF CStepLedCtrl::LedArea(int step) const {
    // Whole pixels, as even as the width allows.
    const auto edge = [this](int index) { return X() + index * Width() / stepCount; };
    const int gap = Width() / stepCount >= 4 ? 1 : 0;
    return {qreal(edge(step)), qreal(Y()), qreal(std::max(1, edge(step + 1) - edge(step) - gap)), qreal(Height())};
}

int CStepLedCtrl::StepAt(int px) const noexcept {
    return std::clamp((px - X()) * stepCount / std::max(1, Width()), 0, stepCount - 1);
}

void CStepLedCtrl::OnLButtonDown(int px, int py, int button) {
    hoveredStep = StepAt(px);
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
    hoveredStep = StepAt(px);
    if (held && pressed && onDrag) onDrag(hoveredStep, pressY - py);
}

void CStepLedCtrl::OnLButtonUp(int /*px*/, int /*py*/, int button) {
    if (button == 0 && std::exchange(held, false) && onRelease) onRelease();
}

void CStepLedCtrl::OnKeyDown(int virtualKey) {
    if (virtualKey == virtualKey::kEscape && std::exchange(held, false) && onCancel) onCancel();
}

void CStepLedCtrl::Tick() {
    if (!IsShown()) return;
    const int now = playingStep ? playingStep() : -1;
    if (std::exchange(stale, false)) {
        playing = now;
        return Update(false, true);
    }
    if (now == playing || !Owner().HasBackBuffer()) return;
    const int before = std::exchange(playing, now);
    Canvas().SetClip(ShownRectangle());
    const Colours colours = ColoursNow();
    for (const int step : {before, now}) {
        if (step < 0 || step >= stepCount) continue;
        DrawLed(step, colours);
        const QRect area = LedArea(step).toAlignedRect();
        BlitRect(area.left(), area.top(), area.right() + 1, area.bottom() + 1);
    }
}

CStepLedCtrl::Colours CStepLedCtrl::ColoursNow() const {
    const auto named = [](const char* colour) { return Palette().Colour(QLatin1String(colour)); };
    return {named("wellDeep"), named("well"), named("text"), Palette().Accent(section)};
}

void CStepLedCtrl::Draw() {
    Canvas().Fill(Rectangle(), ground);
    const Colours colours = ColoursNow();
    for (int step = 0; step < stepCount; ++step) DrawLed(step, colours);
}

void CStepLedCtrl::DrawLed(int step, const Colours& colours) {
    const int velocity = loudness ? loudness(step) : -1;
    const QRectF area = LedArea(step);
    QRgb colour = step % 4 == 0 ? colours.beat : colours.off;
    if (velocity >= 0) {
        colour = Mix(colours.off, colours.accent, 0.30F + 0.70F * static_cast<float>(velocity) / 127.0F);
    }
    if (step == playing) colour = Mix(colours.accent, colours.light, 0.55F);
    Canvas().Fill(area, colour);
    // The quietest note is seen.
    if (velocity >= 0 && step != playing) Canvas().Fill({area.left(), area.top(), area.width(), 2}, colours.accent);
}

}  // namespace quib
