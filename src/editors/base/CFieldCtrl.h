// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A sunken text that a click opens for typing. User-interface thread.

#include "controls/CLabelCtrl.h"
#include "controls/CWinControl.h"

namespace quib {

class CFieldCtrl : public CLabelCtrl {
public:
    CFieldCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
               const QString& title)
        : CLabelCtrl(window, number, left, top, newWidth, newHeight) {
        sunken = true;
        alignment = Qt::AlignCenter;
        entryTitle = title;
    }
    void OnMouseMove(int /*px*/, int /*py*/) override {
        if (enabled) Owner().setCursor(Qt::IBeamCursor);
    }
    void OnMouseLeave() override { Owner().unsetCursor(); }
    void Activate(int /*part*/) override { OnLButtonDown(X(), Y(), 0); }
    void OnLButtonDown(int /*px*/, int /*py*/, int /*button*/) override {
        if (!enabled) return;
        entryText = Text();
        Owner().RunManualEntry(*this);
    }
};

}  // namespace quib
