// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which control of a window gets which mouse event: hit test, capture, hover, click, release, double click,
// wheel. All positions in skin pixels of the window. User-interface thread.

#include <cstdint>

#include "controls/CControl.h"

namespace quib {

class CMouseRouter {
public:
    explicit CMouseRouter(CWinControl& window) : owner(window) {}

    void Move(int x, int y);
    // Times are those at which the buttons moved, in milliseconds of the display's clock; 0: unknown.
    // False when the press was dropped: one that follows a release within 20 ms is a bouncing button.
    bool Press(int button, int x, int y, std::uint64_t time);
    void Release(int button, int x, int y, std::uint64_t time);
    void DoubleClick(int x, int y, std::uint64_t time);
    void Wheel(std::uint32_t word);
    // Presses and releases a button on a control for a key, wherever the mouse is.
    void ClickOn(CControl& control, int button, QPoint point);
    // Shows the help of a control.
    void ShowInfo(CControl& control);
    // The mouse left the window.
    void Leave();
    // The control is about to go.
    void Forget(const CControl& control) noexcept;

    CControl* Hovered() const noexcept { return hovered; }
    CControl* Captured() const noexcept { return captured; }
    int X() const noexcept { return lastX; }
    int Y() const noexcept { return lastY; }

private:
    struct Hit {
        CControl* top = nullptr;  // the top-level control
        CControl* control = nullptr;
    };
    Hit Find(int x, int y) const;
    void Track(int x, int y);
    void Click(const Hit& hit, int button, int x, int y);
    bool TakeAlternativePath(CControl& control);
    void Hover(CControl& control, int x, int y);
    void ReleasePressed(int button, int x, int y);
    void LeaveHovered();
    void CollectPressed(CControl& control);

    CWinControl& owner;
    CControl* hovered = nullptr;
    CControl* captured = nullptr;
    int lastX = -1;
    int lastY = -1;
    std::uint64_t lastRelease = 0;    // 0: none yet
    Hit clicked;                      // while a click is handled
    CControl* keyed = nullptr;        // while a key clicks
    std::vector<CControl*> released;  // while a release is handled
};

}  // namespace quib
