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
    double beats = 0;
    int frames = 0;
    int strokes = 0;
    int index = 0;  // by which the player knows it
};

// By rising key; empty for other plug-ins.
std::vector<LoopEntry> ListLoops(const CPlugin& plugin);

// The frames at which the strokes of a loop begin.
std::vector<int> LoopStrokes(const CPlugin& plugin, const LoopEntry& loop);

// The frame at which it plays now, in whichever player; -1 while it is silent.
int LoopFrame(const CPlugin& plugin, const LoopEntry& loop);

}  // namespace quib
