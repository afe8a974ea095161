// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The loops of the program's Loops folder and of the user's own, read once and shared by every instance of the same
// sample rate. For the host's threads: it reads files and takes a lock.
//
// A Wave or MP3 file whose name begins with a number plays at that key; the others take the free keys from
// 36 on, in the order of their names, those of the user behind those of the program.

#include <memory>
#include <string>
#include <vector>

#include "loops/Loop.h"

namespace quibplug {

using LoopSet = std::vector<std::shared_ptr<const Loop>>;  // by rising key, each key once

// The folder "Loops" beside the one that this library stands in, else the installed one; then those that the
// environment names in QUIB_LOOPS (between colons), else the user's own.
std::vector<std::string> LoopsFolders();

// What the folders hold now, at the files' rates or that one, if it is lower; the same object as long as nothing
// has changed there and somebody holds it. Files that cannot be read are left out.
std::shared_ptr<const LoopSet> SharedLoops(double sampleRate);

}  // namespace quibplug
