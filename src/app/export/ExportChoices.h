// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The export settings that the user keeps from one export to the next. User-interface thread.

#include "export/ExportSettings.h"

namespace quib {

class CSettings;

// What was kept, or what a first export begins with; bad values are brought into range.
ExportSettings ReadExportChoices(const CSettings& settings);
void KeepExportChoices(CSettings& settings, const ExportSettings& choices);

}  // namespace quib
