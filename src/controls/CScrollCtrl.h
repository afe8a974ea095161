// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A scroll bar. The value is the first unit that is shown. User-interface thread.

#include "controls/CControl.h"
#include "controls/CDragValue.h"

namespace quib {

class CScrollCtrl : public CControl {
public:
    CScrollCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                CValue* bound, bool isVertical);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void Resize(int newWidth, int newHeight) override;
    ERole Role() const override { return ERole::kScrollBar; }
    QString ShownText() const override;

    // `whole` units of which `page` are shown at once.
    void SetRange(float newWhole, float newPage);
    float wheelUnits = 3;  // a notch

private:
    float Length() const noexcept { return static_cast<float>(vertical ? Height() : Width()); }
    float ThumbLength() const noexcept;
    float ThumbStart() const noexcept;

    bool vertical;
    bool dragging = false;
    float whole = 1;
    float page = 1;
    CDragValue drag;
};

}  // namespace quib
