// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CStandardOutput.h"

#include <unistd.h>

#include <cstdio>
#include <string>

namespace quib {

CStandardOutput::CStandardOutput() : kept(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

CStandardOutput::~CStandardOutput() {
    std::fflush(stdout);
    if (kept < 0) return;
    dup2(kept, STDOUT_FILENO);
    close(kept);
}

bool CStandardOutput::WriteLine(std::string_view text) const {
    const std::string line = std::string(text) + "\n";
    std::size_t written = 0;
    while (written < line.size()) {
        const ssize_t count = write(kept, line.data() + written, line.size() - written);
        if (count <= 0) return false;
        written += static_cast<std::size_t>(count);
    }
    return true;
}

bool CStandardOutput::ErrorIsTerminal() { return isatty(STDERR_FILENO) != 0; }

}  // namespace quib
