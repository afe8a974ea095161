// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A row of step LEDs: which steps hold notes, and which one plays. User-interface thread.

#include "controls/CControl.h"

namespace quib {

class CStepLedCtrl : public CControl, public CTicked {
public:
    CStepLedCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                 QRgb groundColour);

    void Draw() override;
    void OnLButtonDown(int px, int py, int button) override;
    void Tick() override;

    void SetStepCount(int newCount);
    int StepCount() const noexcept { return stepCount; }

    std::function<int()> playingStep;      // -1 none
    std::function<bool(int step)> isUsed;  // whether notes begin in the step
    std::function<void(int step)> onStep;  // a click on a step
    // Draws the row anew with the next tick: notes have changed.
    void NotesChanged() noexcept { stale = true; }

private:
    QRectF LedArea(int step) const;
    void DrawLed(int step);

    QRgb ground;
    int stepCount = 16;
    int playing = -1;
    bool stale = false;
};

}  // namespace quib
