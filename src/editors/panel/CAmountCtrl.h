// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A parameter as a filled bar: a level slider that is taken anywhere, or a cell with its value in it that is
// dragged up and down. A double click goes to the zero of a cell, or to the default. User-interface thread.

#include "controls/CControl.h"
#include "controls/CDragValue.h"

namespace quib {

class CPanelValues;

class CAmountCtrl : public CControl {
public:
    CAmountCtrl(CWinControl& window, const QRect& place, CPanelValues& panelValues, int parameter);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    void TakeNumber(float number) override;

    float zero = 0;       // where the bar begins, 0..1
    bool isCell = false;  // with its value, dragged up and down
    QString caption;      // left of the bar

private:
    QRectF Bar() const;
    void DrawBar(const QRectF& bar);
    void DrawCell(const QRectF& cell);

    CPanelValues& values;
    int parameter;
    bool dragging = false;
    CDragValue drag;
};

}  // namespace quib
