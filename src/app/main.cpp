// SPDX-License-Identifier: GPL-3.0-or-later
// quib: the workstation.
#include <cstdio>

#include "app/ApplicationMain.h"
#include "app/console/MakeConsole.h"
#include "platform/FatalEnd.h"

// Everything is saved and closed by then. What libraries of plug-ins have registered for the end of a process is left
// out: their threads may still run.
int main(int argc, char** argv) {
    const int code = quib::ApplicationMain(argc, argv, quib::MakeConsole);
    std::fflush(nullptr);
    quib::EndAtOnce(code);
}
