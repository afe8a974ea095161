// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The row above the piano roll: what is shown, snap, scale, quantise, ghosts. User-interface thread.

#include "editors/pianoroll/CRollBar.h"

namespace quib {

class CRollToolBar : public CRollBar {
public:
    CRollToolBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                 CWinControlPianoRoll& pianoRoll);
    // What finds no room goes into a menu at the right.
    void Resize(int newWidth, int newHeight) override;
    // After any setting of the roll has changed.
    void ShowState();

private:
    void FillPatterns(QMenu& menu);
    void FillSnaps(QMenu& menu);
    void FillRoots(QMenu& menu);
    void FillScales(QMenu& menu);
    void FillRowOrders(QMenu& menu);
    void FillStrengths(QMenu& menu);
    void FillGhosts(QMenu& menu);
    void FillMore(QMenu& menu);

    CValue keysShown, drumsShown, foldShown, auditionShown, followShown;
    CLabelMenuCtrl* pattern = nullptr;
    CLabelMenuCtrl* snap = nullptr;
    CLabelMenuCtrl* root = nullptr;
    CLabelMenuCtrl* scale = nullptr;
    CLabelCtrl* scaleLabel = nullptr;
    CLabelMenuCtrl* rows = nullptr;
    CLabelMenuCtrl* strength = nullptr;
    CLabelMenuCtrl* ghosts = nullptr;
    CSwitchCtrl* audition = nullptr;
    CSwitchCtrl* follow = nullptr;
    CSwitchCtrl* more = nullptr;
};

}  // namespace quib
