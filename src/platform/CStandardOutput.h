// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Keeps standard output for the tool itself: what plug-ins print goes to standard error while an object
// of this class lives.

#include <string_view>

namespace quib {

class CStandardOutput {
public:
    CStandardOutput();
    ~CStandardOutput();
    CStandardOutput(const CStandardOutput&) = delete;
    CStandardOutput& operator=(const CStandardOutput&) = delete;

    // Writes a line to the real standard output. False when that is not possible.
    bool WriteLine(std::string_view text) const;

    // True when standard error is a terminal that somebody may look at.
    static bool ErrorIsTerminal();

private:
    int kept;
};

}  // namespace quib
