// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The options of quib-render that ask for more than a plain Wave or MP3 file: other formats, loudness, a part of
// the song, the point and names of stems, tags. They, and stems, lead to an export as the window makes it.

#include <optional>
#include <string>

#include "export/ExportSettings.h"

namespace CLI {
class App;
}

namespace quib {

struct RenderOptions;
class CStandardOutput;

struct ExportOptions {
    SoundFormat format;
    std::optional<int> bitRate;
    std::optional<double> loudness;
    double truePeak = -1.0;
    double tailSeconds = 10;
    bool loop = false;
    bool markers = false;
    std::optional<int> from;
    bool afterMaster = false;
    std::optional<std::string> namePattern;
    SoundTags tags;
    bool isAsked = false;  // by any of the options
};

// The options stay in `options` once the command line has been read.
void AddExportOptions(CLI::App& app, ExportOptions& options);
// Whether OUT's name or an option wants an export.
bool IsExport(const RenderOptions& options);
// Renders the project as asked. Gives the exit code; the user has been told.
int RunExport(const RenderOptions& options, const CStandardOutput& output);

}  // namespace quib
