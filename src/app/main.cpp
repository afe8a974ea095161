// SPDX-License-Identifier: GPL-3.0-or-later
// quib: the workstation.
#include "app/ApplicationMain.h"
#include "app/console/MakeConsole.h"

int main(int argc, char** argv) { return quib::ApplicationMain(argc, argv, quib::MakeConsole); }
