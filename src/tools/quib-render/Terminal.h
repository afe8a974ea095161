// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What quib-render tells on the terminal.

#include <string>

#include "platform/CStandardOutput.h"

namespace quib {

// A line on standard error, with the program's name.
void Say(const std::string& text);

// A bar on the terminal, redrawn when it changes.
class CProgressBar {
public:
    ~CProgressBar();
    // `share`: 0..1.
    void Show(double share);

private:
    bool terminal = CStandardOutput::ErrorIsTerminal();
    int drawn = -1;
};

}  // namespace quib
