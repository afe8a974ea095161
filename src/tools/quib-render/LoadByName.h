// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Finds and loads the plug-ins of a project; those that are not built in only after quib-scan has loaded them in a
// process of its own. Editing thread.

#include <map>

#include "model/plugin/CPlugin.h"
#include "model/plugin/CPluginFinder.h"

namespace quib {

class CProjectPlugins {
public:
    // `userFolders`: to look in beside the program's and the system's.
    explicit CProjectPlugins(const std::vector<std::filesystem::path>& userFolders);

    // Null with the reason in `error`.
    std::shared_ptr<CPlugin> Load(const PluginReference& wanted, ESlotKind kind, PluginEnvironment& environment,
                                  std::string& error);

private:
    bool IsSound(const std::filesystem::path& library, std::string& error);
    static bool IsBuiltIn(const std::filesystem::path& library);

    CPluginFinder finder;
    std::map<std::filesystem::path, std::string> scanned;  // why it is not let in; empty: it is
};

}  // namespace quib
