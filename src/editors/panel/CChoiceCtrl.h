// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A parameter of many steps: its value in the plug-in's words between two arrows that go to the next value
// that reads otherwise, with its label below. User-interface thread.

#include "controls/CControl.h"

namespace quib {

class CPanelValues;

class CChoiceCtrl : public CControl {
public:
    CChoiceCtrl(CWinControl& window, const QRect& place, CPanelValues& panelValues, int parameter);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    void TakeNumber(float number) override;

    QString caption;
    bool counts = false;  // whole numbers: less and more in place of arrows
    int steps = 0;        // of the whole range; 0: not known, searched by the text

private:
    QRectF Field() const;
    void Step(int direction);

    CPanelValues& values;
    int parameter;
    float wheelRest = 0;
};

}  // namespace quib
