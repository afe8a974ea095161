// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A row of step boxes: which steps hold notes and how loud, and which one plays. It tells what the mouse
// does to the boxes; what that means is its owner's affair. User-interface thread.

#include "controls/CControl.h"

namespace quib {

class CStepLedCtrl : public CControl, public CTicked {
public:
    CStepLedCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                 QRgb groundColour);

    void Draw() override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnKeyDown(int virtualKey) override;
    void Tick() override;

    void SetStepCount(int newCount);
    int StepCount() const noexcept { return stepCount; }

    std::function<int()> playingStep;              // -1 none
    std::function<int(int step)> loudness;         // velocity of the loudest note that begins there; -1 none
    std::function<void(int step)> onRestart;       // a click with Ctrl
    std::function<void(int step)> onPress;         // the left button goes down on a box
    std::function<void(int step, int up)> onDrag;  // while it is held: the box below the mouse, pixels upwards
    std::function<void()> onRelease;
    std::function<void()> onCancel;  // Escape
    // The box that the mouse was over last.
    int HoveredStep() const noexcept { return hoveredStep; }
    // Draws the row anew with the next tick: notes have changed.
    void NotesChanged() noexcept { stale = true; }

private:
    struct Colours {
        QRgb off;
        QRgb beat;
        QRgb light;
        QRgb accent;
    };
    QRectF LedArea(int step) const;
    int StepAt(int px) const noexcept;
    Colours ColoursNow() const;
    void DrawLed(int step, const Colours& colours);

    QRgb ground;
    int stepCount = 16;
    int playing = -1;
    int hoveredStep = 0;
    int pressY = 0;
    bool held = false;  // a gesture on the boxes goes on
    bool stale = false;
};

}  // namespace quib
