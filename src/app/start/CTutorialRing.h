// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Rings the control of the main window that the tutorial means. User-interface thread.

#include "app/browser/CPlaceMark.h"

namespace quib {

class CControl;
class CMainWindow;
class CStartPage;
class CWinControlMain;

class CTutorialRing : public QObject {
    Q_OBJECT

public:
    CTutorialRing(CMainWindow& mainWindow, CWinControlMain& mainConsole, CStartPage& startPage);

    // Of the console, in its own pixels; empty when nothing is meant or it is not to be seen.
    QRect Place() const;

private:
    CControl* Find(int number) const;

    CMainWindow& window;
    CWinControlMain& console;
    CStartPage& page;
    CPlaceMark mark;
    QRect shown;
};

}  // namespace quib
