// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Project files (.prg) between bytes and state. Editing thread. Reading touches nothing but the new
// state; writing asks the plug-ins for theirs and otherwise only reads what is published.

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "model/files/CRecordWriter.h"
#include "model/files/LoadContext.h"
#include "project/ProjectState.h"

namespace quib {

// Told before each plug-in place how far the reading is (0..1) and what comes; false stops it.
using LoadProgress = std::function<bool(float share, const std::string& what)>;

// Builds a project from the bytes of a file. False when they hold no record of a project or the user
// stopped it: `state` is as before then, and `error` says why. What could be read of a damaged file is
// read, with warnings about the rest.
bool ReadProject(std::string_view bytes, const PluginLoader& load, ProjectState& state, std::string& error,
                 const LoadProgress& progress = {});
// The same from a file. `error` names it.
bool ReadProjectFile(const std::filesystem::path& path, const PluginLoader& load, ProjectState& state,
                     std::string& error, const LoadProgress& progress = {});

// The keys held on an instrument's on-screen keyboard, as the engine pictures them. Unset: those that
// the instrument was read with, which is right only while it does not play.
using HeldKeys = std::function<std::vector<std::int32_t>(const CInstrument& instrument)>;

// Appends the whole file.
void WriteProject(CRecordWriter& writer, const ProjectState& state, const HeldKeys& heldKeys = {});
// Replaces the file in one step: afterwards there is the new one (true) or, whatever happened, the old
// one; `error` then names path and reason.
bool WriteProjectFile(const std::filesystem::path& path, const ProjectState& state, std::string& error,
                      const HeldKeys& heldKeys = {});

}  // namespace quib
