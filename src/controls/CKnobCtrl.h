// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A knob: dragged up and down when it is taken at its centre, turned about it when it is taken further
// out. With an optional catch (detent). User-interface thread.

#include <QPoint>

#include "controls/CControl.h"
#include "controls/CDragValue.h"

namespace quib {

class CKnobCtrl : public CControl {
public:
    // The mouse turns by this angle less, on either side of the bottom, than a whole turn. Radians.
    static constexpr float kGapAngle = 0.5235988F;

    CKnobCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight, CValue* bound);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    ERole Role() const override { return ERole::kSlider; }

    bool IsCentreMode() const noexcept { return centreMode; }

    bool detentOn = false;
    float detentValue = 0;
    bool fillFromCentre = false;  // the ring grows from the middle of the range
    QString label;                // below the knob
    bool valueBelow = false;      // its value is written there

protected:
    // Of the disc, below the control's upper edge.
    virtual int CentreY() const noexcept { return HasText() ? Side() / 2 : Height() / 2; }

private:
    void DragCentre(int py);
    void DragRotary(int px, int py);
    QPoint FromCentre(int px, int py) const noexcept;
    float AngleOfValue() const noexcept;
    float ValueOfAngle(float angle) const noexcept;
    int Side() const noexcept;
    bool HasText() const noexcept { return valueBelow || !label.isEmpty(); }

    bool dragging = false;
    bool centreMode = false;
    CDragValue drag;
    QPoint previous;  // of the mouse, seen from the centre
    float angle = 0;  // radians, 0 .. 2 pi
};

}  // namespace quib
