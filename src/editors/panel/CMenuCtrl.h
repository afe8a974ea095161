// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A parameter of some values as its text with an arrow; a click opens the list of them, in the plug-in's words, the
// wheel goes through them. User-interface thread.

#include <QStringList>

#include "controls/CControl.h"

namespace quib {

class CPanelValues;

class CMenuCtrl : public CControl {
public:
    // `count`: values that differ, two at least.
    CMenuCtrl(CWinControl& window, const QRect& place, CPanelValues& panelValues, int parameter, int count);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnMouseLeave() override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void TakeNumber(float number) override;

    // Of each value. The plug-in tells them only of what it is set to, so it is set to each and back.
    QStringList Texts();

private:
    int Chosen() const;
    float ShareOf(int index) const { return static_cast<float>(index) / static_cast<float>(count - 1); }
    void Choose(int index);

    CPanelValues& values;
    int parameter;
    int count;
    float wheelRest = 0;
};

}  // namespace quib
