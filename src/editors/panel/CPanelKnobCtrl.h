// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A parameter as a knob with its label and its value below it. A double click goes to the default, digits
// typed over it are a value in the plug-in's words. User-interface thread.

#include "controls/CKnobCtrl.h"

namespace quib {

class CPanelValues;

class CPanelKnobCtrl : public CKnobCtrl {
public:
    // The disc's radius, in skin pixels, leaves room for the ring about it.
    CPanelKnobCtrl(CWinControl& window, const QRect& place, int discRadius, CPanelValues& panelValues, int parameter);

    void Draw() override;
    void TakeNumber(float number) override;

    // Where the ring grows from, 0..1.
    float zero = 0;
    QString caption;
    bool automated = false;  // a lane plays it
    bool learned = false;    // MIDI moves it

protected:
    int CentreY() const noexcept override { return radius + kRing; }

private:
    static constexpr int kRing = 4;

    CPanelValues& values;
    int parameter;
    int radius;
};

}  // namespace quib
