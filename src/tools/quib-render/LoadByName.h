// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Finds and loads the plug-ins of a project. Editing thread.

#include "model/plugin/CPlugin.h"
#include "model/plugin/CPluginFinder.h"

namespace quib {

// Null with the reason in `error`.
std::shared_ptr<CPlugin> LoadByName(CPluginFinder& finder, const PluginReference& wanted, ESlotKind kind,
                                    PluginEnvironment& environment, std::string& error);

}  // namespace quib
