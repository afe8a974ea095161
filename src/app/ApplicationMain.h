// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The program from its command line to its end.

#include "app/CMainWindow.h"

namespace quib {

// Runs the workstation; gives the exit code of the process. `makeConsole` makes what fills the main window.
int ApplicationMain(int argc, char** argv, const ConsoleFactory& makeConsole);

}  // namespace quib
