// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The tool windows: one row each. A new window is a folder of its own, a row here and its texts.

#include <span>

#include "editors/base/ToolRow.h"

namespace quib {

std::span<const ToolRow> ToolTable();
// Null for a tool that has no row.
const ToolRow* FindTool(ETool tool);

}  // namespace quib
