// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A project made for tests: one with every kind of record.

#include <memory>
#include <string>

#include "project/ProjectFile.h"

namespace quib::generated {

// Loads the test plug-ins by the names of their libraries; everything else is missing.
PluginLoader TestPluginLoader();

// Instruments with and without plug-ins, a missing plug-in, presets with state images, ball sounds,
// playlists, points in every family: every record that the writer knows.
ProjectState EveryRecord();

std::string BytesOf(const ProjectState& state);

}  // namespace quib::generated
