// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CStepLedCtrl.h"

#include <algorithm>

#include "controls/CWinControl.h"

namespace quib {

CStepLedCtrl::CStepLedCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                           QRgb groundColour)
    : CControl(window, number, left, top, newWidth, newHeight), CTicked(window), ground(groundColour) {
    captureOnClick = false;
}

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

void CStepLedCtrl::OnLButtonDown(int px, int /*py*/, int button) {
    if (button == 0 && onStep) onStep(std::clamp((px - X()) * stepCount / std::max(1, Width()), 0, stepCount - 1));
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
    for (const int step : {before, now}) {
        if (step < 0 || step >= stepCount) continue;
        DrawLed(step);
        const QRect area = LedArea(step).toAlignedRect();
        BlitRect(area.left(), area.top(), area.right() + 1, area.bottom() + 1);
    }
}

void CStepLedCtrl::Draw() {
    Canvas().Fill(Rectangle(), ground);
    for (int step = 0; step < stepCount; ++step) DrawLed(step);
}

void CStepLedCtrl::DrawLed(int step) {
    static const QRgb off = Palette().Colour(QStringLiteral("wellDeep"));
    static const QRgb beat = Palette().Colour(QStringLiteral("well"));
    static const QRgb light = Palette().Colour(QStringLiteral("text"));
    const QRgb accent = Palette().Accent(section);
    QRgb colour = step % 4 == 0 ? beat : off;
    if (isUsed && isUsed(step)) colour = Mix(off, accent, 0.55F);
    if (step == playing) colour = Mix(accent, light, 0.55F);
    Canvas().Fill(LedArea(step), colour);
}

}  // namespace quib
