// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The row above the lane: which lane is shown, those in use, step entry, and how many notes are selected.
// User-interface thread.

#include <array>

#include "editors/pianoroll/CRollBar.h"

namespace quib {

class CLaneCapCtrl;

class CRollLaneBar : public CRollBar {
public:
    CRollLaneBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                 CWinControlPianoRoll& pianoRoll);
    void Resize(int newWidth, int newHeight) override;
    // How many notes are selected.
    void ShowCount();
    // After the lane that is shown, or those in use, have changed.
    void ShowLanes();

private:
    void PlaceCaps();

    CValue stepShown;
    CLabelMenuCtrl* chooser = nullptr;
    std::array<CLaneCapCtrl*, 5> caps{};  // as many of the lanes in use as there is room for
    CSwitchCtrl* more = nullptr;
    CSwitchCtrl* step = nullptr;
    CLabelCtrl* count = nullptr;
};

}  // namespace quib
