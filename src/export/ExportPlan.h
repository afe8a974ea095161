// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which files an export writes, and what they are called. Editing thread.

#include <filesystem>
#include <string>
#include <vector>

#include "export/ExportSettings.h"
#include "project/ProjectState.h"

namespace quib {

struct ExportFile {
    enum class ESource { kMix, kInstrument, kEffect };
    ESource source = ESource::kMix;
    int index = 0;  // of the instrument in the project, of the shared effect
    std::string name;
    std::filesystem::path path;
};

// Whether an instrument has a strip that gives sound.
bool Sounds(const CInstrument& instrument);

// One file for the mix, or one for each stem; no two of one name. Words in braces of the name's pattern:
// title, artist, bpm, date, stem, number. Without the last two several files get their stem's name.
std::vector<ExportFile> PlanFiles(const ProjectState& state, const ExportSettings& settings);

// The steps of a range; both 0 when there is nothing in it.
struct StepRange {
    int first = 0;
    int end = 0;
};
StepRange StepsOf(EExportRange range, const ProjectState& state);

// Whether the stems, added up, give the mix: 32 bits, before the master and nothing left out or done there.
bool StemsAddUp(const ProjectState& state, const ExportSettings& settings);

}  // namespace quib
