// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A parameter of a few steps as a row, or rows, of segments with texts or with the shapes of waves, one of them
// chosen; or as one segment that shows its step and goes to the next by a click. User-interface thread.

#include <QStringList>

#include "controls/CControl.h"

namespace quib {

class CPanelValues;

class CPickCtrl : public CControl {
public:
    // `names`: of the steps, in their order.
    CPickCtrl(CWinControl& window, const QRect& place, CPanelValues& panelValues, int parameter, QStringList names);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;

    int columns = 0;      // of segments; 0: all in one row
    bool waves = false;   // the names are those of wave shapes
    bool cycles = false;  // shows its step only
    QStringList shown;    // other texts than the names

private:
    int Chosen() const;
    int SegmentAt(int px, int py) const;
    QRectF Segment(int index) const;
    void Choose(int index);
    void DrawOne(int index, const QRectF& area);
    void DrawWave(const QString& shape, const QRectF& area, QRgb colour);

    QStringList names;
    int under = -1;  // segment under the mouse
    float wheelRest = 0;
};

}  // namespace quib
