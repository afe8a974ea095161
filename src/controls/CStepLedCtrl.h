// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A row of step boxes: which steps hold notes and how loud, and which one plays. More than 64 steps are
// pages, with a dot for each above the boxes: the page follows playing, and the wheel turns it. It tells
// what the mouse does to the boxes; what that means is its owner's affair. User-interface thread.

#include "controls/CControl.h"

namespace quib {

class CStepLedCtrl : public CControl, public CTicked {
public:
    static constexpr int kPageSteps = 64;

    CStepLedCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                 QRgb groundColour);

    void Draw() override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnKeyDown(int virtualKey) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void Tick() override;
    ERole Role() const override { return ERole::kChoice; }
    int PartCount() const override { return stepCount; }
    ControlPart PartAt(int part) const override;
    void RevealPart(int part) override;
    void Turn(int part, int notches, bool fine) override;

    void SetStepCount(int newCount);
    int StepCount() const noexcept { return stepCount; }
    int Page() const noexcept { return page; }
    int PageCount() const noexcept { return (stepCount + kPageSteps - 1) / kPageSteps; }

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
    void DrawPages();
    bool IsShownStep(int step) const noexcept;
    bool TurnTo(int wanted);
    void FollowPlaying(int step);
    // Boxes that have a place, and the step of the first one.
    int BoxCount() const noexcept { return stepCount < kPageSteps ? stepCount : kPageSteps; }
    int FirstStep() const noexcept { return page * kPageSteps; }

    QRgb ground;
    int stepCount = 16;
    int page = 0;
    bool pageByHand = false;  // until playing starts anew
    int playing = -1;
    int hoveredStep = 0;
    int pressY = 0;
    bool held = false;  // a gesture on the boxes goes on
    bool stale = false;
};

}  // namespace quib
