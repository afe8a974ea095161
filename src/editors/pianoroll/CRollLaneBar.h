// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The row above the lane: step entry, and how many notes are selected. User-interface thread.

#include "editors/pianoroll/CRollBar.h"

namespace quib {

class CRollLaneBar : public CRollBar {
public:
    CRollLaneBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                 CWinControlPianoRoll& pianoRoll);
    void Resize(int newWidth, int newHeight) override;
    // How many notes are selected.
    void ShowCount();

private:
    CValue stepShown;
    CLabelCtrl* count = nullptr;
};

}  // namespace quib
