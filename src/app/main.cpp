// SPDX-License-Identifier: GPL-3.0-or-later
// quib: the workstation.
#include <QLabel>

#include "app/ApplicationMain.h"

namespace {

QWidget* MakeConsole(quib::CMainWindow&) { return new QLabel; }

}  // namespace

int main(int argc, char** argv) { return quib::ApplicationMain(argc, argv, MakeConsole); }
