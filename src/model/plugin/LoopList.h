// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The loops that a loop player has found, as it tells them. Editing thread.

#include <string>
#include <vector>

#include "model/plugin/CPlugin.h"

namespace quib {

struct LoopEntry {
    std::string name;  // of its file, without extension; its first 63 bytes
    int key = 0;
    double tempo = 0;  // BPM
};

// By rising key; empty for other plug-ins.
std::vector<LoopEntry> ListLoops(const CPlugin& plugin);

}  // namespace quib
