// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Step boxes: which steps hold notes, how loud and how long, and which one plays. More than 32 steps stand in two
// rows where there is height for them. More than 64 are pages, with a dot for each above the boxes: the page
// follows playing, and the wheel turns it. It tells what the mouse does to the boxes; what that means is its
// owner's affair. User-interface thread.

#include "controls/CControl.h"

namespace quib {

class CStepLedCtrl : public CControl, public CTicked {
public:
    static constexpr int kPageSteps = 64;
    static constexpr int kRowSteps = 32;

    CStepLedCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                 QRgb groundColour);

    void Draw() override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnKeyDown(int virtualKey) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
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
    std::function<bool(int step)> holds;           // a note that began before sounds on in it; unset: none does
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
        QRgb edge;
        QRgb light;
        QRgb accent;
    };
    QRectF LedArea(int step) const;
    int StepAt(int px, int py) const noexcept;
    void Hover(int step);
    void RedrawLed(int step);
    Colours ColoursNow() const;
    void DrawLed(int step, const Colours& colours);
    void DrawEdge(const QRectF& area, qreal wide, QRgb colour);
    void DrawPages();
    bool IsShownStep(int step) const noexcept;
    bool TurnTo(int wanted);
    void FollowPlaying(int step);
    // Boxes that have a place, and the step of the first one.
    int BoxCount() const noexcept { return stepCount < kPageSteps ? stepCount : kPageSteps; }
    int RowCount() const noexcept { return BoxCount() > kRowSteps && Height() >= kTwoRows ? 2 : 1; }
    int RowBoxes() const noexcept { return (BoxCount() + RowCount() - 1) / RowCount(); }
    // The pixels above the boxes.
    int Head() const noexcept { return PageCount() > 1 ? kPageRow : 0; }
    int FirstStep() const noexcept { return page * kPageSteps; }

    static constexpr int kPageRow = 3;   // pixels above the boxes
    static constexpr int kTwoRows = 20;  // pixels that two rows need

    QRgb ground;
    int stepCount = 16;
    int page = 0;
    bool pageByHand = false;  // until playing starts anew
    int playing = -1;
    int hoveredStep = 0;
    bool mouseIsOver = false;
    int pressY = 0;
    bool held = false;  // a gesture on the boxes goes on
    bool stale = false;
};

}  // namespace quib
