// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The table of plug-in formats: which files are theirs, and how one is loaded. A further format is a folder
// beside vst2 and a row here. Constant; any thread, loading on the editing thread.

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace quib {

class CPlugin;
struct PluginEnvironment;

struct PluginFormat {
    std::string_view name;       // first part of identities
    std::string_view extension;  // of its files here, in lower case
    // Extensions that its files have on other systems: projects that name those find the file here.
    std::span<const std::string_view> foreignExtensions;
    bool isFolder;  // its "files" are folders that hold the library
    // Loads the library and makes the plug-in, not yet opened. Null, with `error`, when that is not possible.
    std::shared_ptr<CPlugin> (*load)(const std::filesystem::path& path, PluginEnvironment& environment,
                                     std::string& error);
};

std::span<const PluginFormat> PluginFormats() noexcept;

// True for the name of a file that may be a plug-in; upper and lower case count alike.
bool HasPluginExtension(const std::filesystem::path& file);
// A file name without the extension that some format has here or on another system.
std::string_view WithoutPluginExtension(std::string_view fileName) noexcept;
bool HasExtension(std::string_view fileName, std::string_view extension) noexcept;

}  // namespace quib
