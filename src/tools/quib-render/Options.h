// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the user of quib-render asks for.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "engine/CAudio.h"
#include "tools/quib-render/ExportOptions.h"

namespace quib {

struct RenderOptions {
    std::filesystem::path project;
    std::filesystem::path output;                   // sound file; empty when only saving again
    std::optional<std::filesystem::path> resave;    // project file to write instead of rendering
    std::optional<std::filesystem::path> midiFile;  // to write instead of rendering
    std::optional<std::filesystem::path> stems;     // folder for a file of each instrument
    std::optional<int> steps;
    std::optional<double> seconds;
    RenderFormat format;
    std::vector<std::filesystem::path> pluginFolders;
    std::optional<bool> songMode;
    std::uint32_t seed = 1;
    bool json = false;
    bool play = false;  // in real time; `output` records it unless empty
    std::string outputDevice;
    std::string midiDevice = "OFF";
    bool list = false;  // only the names of devices and ports
    ExportOptions exporting;
};

// Exit codes.
constexpr int kDone = 0;
constexpr int kCouldNot = 1;
constexpr int kWrongUsage = 2;
constexpr int kPluginMissing = 3;

// Reads the command line into `options`. Returns nothing to go on, or the exit code after help, the
// version or a message about wrong usage.
std::optional<int> ParseOptions(int argc, char** argv, RenderOptions& options);

}  // namespace quib
