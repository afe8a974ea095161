// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Projects made for tests and benchmarks: one with every kind of record, and large ones.

#include <memory>
#include <string>

#include "project/ProjectFile.h"

namespace quib::generated {

// Loads the test plug-ins by the names of their libraries; everything else is missing.
PluginLoader TestPluginLoader();

// Instruments with and without plug-ins, a missing plug-in, presets with state images, ball sounds,
// playlists, points in every family: every record that the writer knows.
ProjectState EveryRecord();

// `instruments` x 16 patterns x `notes` notes, and `points` automation points in all.
ProjectState Large(int instruments, int notes, int points);

std::string BytesOf(const ProjectState& state);

}  // namespace quib::generated
