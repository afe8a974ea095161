// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Two buttons in one that zoom out and in, side by side, or where it is higher than wide in over out.
// User-interface thread.

#include "controls/CControl.h"

namespace quib {

class CZoomCtrl : public CControl {
public:
    CZoomCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnDoubleClick(int px, int py) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    ERole Role() const override { return ERole::kChoice; }
    int PartCount() const override { return 2; }
    ControlPart PartAt(int part) const override;

    std::function<void(int direction)> onZoom;  // -1 out, 1 in

private:
    bool IsUpright() const noexcept { return Height() > Width(); }
    int DirectionAt(int px, int py) const noexcept;

    int lit = 0;  // the direction under the mouse
};

}  // namespace quib
