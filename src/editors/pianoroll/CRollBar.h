// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A row of controls around the piano roll; it reads and changes the window it belongs to. User-interface
// thread.

#include <functional>

#include "controls/CControl.h"

class QAction;
class QMenu;

namespace quib {

class CLabelCtrl;
class CLabelMenuCtrl;
class CSwitchCtrl;
class CWinControlPianoRoll;

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

// A line of a menu with a tick at what holds.
QAction* AddChoice(QMenu& menu, const QString& text, bool chosen, const std::function<void()>& choose);

}  // namespace quib
