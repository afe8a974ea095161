// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A bar between two panes of a window, dragged to share their room. User-interface thread.

#include "controls/CControl.h"

namespace quib {

class CSplitCtrl : public CControl {
public:
    // A vertical bar is dragged sideways.
    CSplitCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
               bool isVertical);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseLeave() override;
    void Resize(int newWidth, int newHeight) override;
    ERole Role() const override { return ERole::kSlider; }
    void Turn(int part, int notches, bool fine) override;
    void GoToEnd(bool highest) override;
    QString SpokenValue() const override { return {}; }

    int lowest = 0;  // place of the bar that is allowed, in the window's pixels
    int highest = 1 << 16;
    std::function<void(int place)> onSplit;

private:
    void MoveTo(int place);

    bool vertical;
    bool dragging = false;
    int grip = 0;  // from the bar's edge to the mouse
};

}  // namespace quib
