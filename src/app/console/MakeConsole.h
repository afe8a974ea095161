// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Puts the console into a main window and ties the two together. User-interface thread.

class QWidget;

namespace quib {

class CMainWindow;

// The console as the main window's factory for it wants; the window owns it.
QWidget* MakeConsole(CMainWindow& window);

}  // namespace quib
