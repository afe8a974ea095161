// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The row at the foot of the piano roll: the MIDI input of the instrument, what played keys are moved to, the place of
// the mouse.
// User-interface thread.

#include <array>

#include "editors/pianoroll/CRollBar.h"

namespace quib {

class CRollStatusBar : public CRollBar {
public:
    CRollStatusBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                   CWinControlPianoRoll& pianoRoll);
    void Resize(int newWidth, int newHeight) override;
    // The instrument's MIDI input has changed.
    void ShowInput();
    // It is set in the console too.
    void ShowRecordSnap();
    // Where the mouse is; a key below 0 for nowhere.
    void ShowPlace(float step, int key);

private:
    void AddSwitches();
    QString LimitLine(bool isUpper) const;
    void FillOptions(QMenu& menu);
    void FillChannels(QMenu& menu);
    void FillLimit(QMenu& menu, bool upper);
    void FillTranspose(QMenu& menu);
    void TypeTranspose();
    void FillRecordSnap(QMenu& menu);

    std::array<CValue, 4> passes;
    std::array<CSwitchCtrl*, 4> switches{};
    CLabelMenuCtrl* channel = nullptr;
    CLabelMenuCtrl* lower = nullptr;
    CLabelMenuCtrl* upper = nullptr;
    CLabelMenuCtrl* transpose = nullptr;
    CLabelMenuCtrl* armedLine = nullptr;  // in place of the three boxes while a limit waits for its key
    CLabelCtrl* recordLabel = nullptr;
    CLabelMenuCtrl* recordSnap = nullptr;
    CLabelCtrl* place = nullptr;
};

}  // namespace quib
