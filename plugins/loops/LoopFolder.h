// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The loops of the program's Loops folder, read once and shared by every instance of the same sample
// rate. For the host's threads: it reads files and takes a lock.
//
// A Wave file whose name begins with a number plays at that key; the others take the free keys from
// 36 on, in the order of their names.

#include <memory>
#include <string>
#include <vector>

#include "loops/Loop.h"

namespace quibplug {

using LoopSet = std::vector<Loop>;  // by rising key, each key once

// The folder "Loops" beside the one that this library stands in, else the installed one.
std::string LoopsFolder();

// What the folder holds, at its files' rates or that one, if it is lower. Files that cannot be read are left out.
LoopSet ReadLoops(const std::string& folder, double sampleRate);

// The same for LoopsFolder(), shared for as long as anybody holds it.
std::shared_ptr<const LoopSet> SharedLoops(double sampleRate);

}  // namespace quibplug
