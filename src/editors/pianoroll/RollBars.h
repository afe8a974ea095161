// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The rows of controls around the piano roll: tools above, the lane's row below the split, the
// instrument's MIDI input at the foot. Each reads and changes its window. User-interface thread.

#include "controls/CControl.h"

class QMenu;

namespace quib {

class CLabelCtrl;
class CLabelMenuCtrl;
class CSwitchCtrl;
class CWinControlPianoRoll;

// A ground for the controls that stand on it.
class CRollBar : public CControl {
public:
    CRollBar(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
             CWinControlPianoRoll& pianoRoll);
    void Draw() override;
    void Resize(int newWidth, int newHeight) override;

protected:
    CLabelCtrl& AddLabel(int left, int newWidth, const QString& text);
    // A button with a text, or a glyph for a positive number; pressed while `shown` is on.
    CSwitchCtrl& AddButton(int left, int newWidth, const QString& text, int glyph, CValue* shown, int info,
                           std::function<void()> run);
    CLabelMenuCtrl& AddMenu(int left, int newWidth, int info, std::function<void(QMenu&)> fill);
    void PaintChildren();

    CWinControlPianoRoll& window;
    int controlTop = 0;
    int controlHeight = 20;
};

class CRollToolBar : public CRollBar {
public:
    CRollToolBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                 CWinControlPianoRoll& pianoRoll);
    // After any setting of the roll has changed.
    void ShowState();

private:
    void FillPatterns(QMenu& menu);
    void FillSnaps(QMenu& menu);
    void FillRoots(QMenu& menu);
    void FillScales(QMenu& menu);
    void FillStrengths(QMenu& menu);
    void FillGhosts(QMenu& menu);

    CValue keysShown, drumsShown, foldShown, auditionShown, followShown;
    CLabelMenuCtrl* pattern = nullptr;
    CLabelMenuCtrl* snap = nullptr;
    CLabelMenuCtrl* root = nullptr;
    CLabelMenuCtrl* scale = nullptr;
    CLabelMenuCtrl* strength = nullptr;
    CLabelMenuCtrl* ghosts = nullptr;
};

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

class CRollStatusBar : public CRollBar {
public:
    CRollStatusBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                   CWinControlPianoRoll& pianoRoll);
    void Resize(int newWidth, int newHeight) override;
    // The instrument's MIDI input has changed.
    void ShowInput();
    // Where the mouse is; a key below 0 for nowhere.
    void ShowPlace(float step, int key);

private:
    void AddSwitches();
    void FillChannels(QMenu& menu);
    void FillLimit(QMenu& menu, bool upper);
    void FillTranspose(QMenu& menu);

    std::array<CValue, 4> passes;
    std::array<CSwitchCtrl*, 4> switches{};
    CLabelMenuCtrl* channel = nullptr;
    CLabelMenuCtrl* lower = nullptr;
    CLabelMenuCtrl* upper = nullptr;
    CLabelMenuCtrl* transpose = nullptr;
    CLabelCtrl* place = nullptr;
};

}  // namespace quib
