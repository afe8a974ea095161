// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A control that can draw any part of itself alone, in skin pixels from its upper left corner.
// User-interface thread.

#include "controls/CControl.h"

namespace quib {

class CPaneCtrl : public CControl {
public:
    using CControl::CControl;
    void Draw() override { Paint(QRect(0, 0, Width(), Height())); }

protected:
    // The clip is the part's; whoever narrows it puts it back.
    virtual void Paint(const QRect& part) = 0;
    // Draws and shows a part. Nothing while the control is hidden.
    virtual void DrawPart(const QRect& wanted);
    // A part as the canvas counts, as far as it is shown.
    QRect OnCanvas(const QRect& part) const { return part.translated(X(), Y()).intersected(ShownRectangle()); }
};

}  // namespace quib
