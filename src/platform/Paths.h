// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Places of the file system that the program knows.

#include <filesystem>
#include <string>
#include <vector>

namespace quib {

// Folder of the running executable; empty when the system does not tell.
std::filesystem::path ExecutableFolder();

// What the program brings and only reads, each beside the executable or in its installed place:
// the folders PluginInstruments and PluginEffects,
std::filesystem::path ShippedLibraries();
// the folder Programs with the examples, the folder Loops,
std::filesystem::path ShippedData();
// the manuals.
std::filesystem::path ShippedDocuments();

// A copy to be carried along: a marker file beside the executable says so.
bool IsPortableCopy();

// Folders in which plug-ins of the user's system stand, in the order in which they are searched:
// those of VST_PATH and LXVST_PATH, the user's own, then the system's. Existing folders only.
std::vector<std::filesystem::path> SystemPluginFolders();

}  // namespace quib
