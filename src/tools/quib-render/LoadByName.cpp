// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/quib-render/LoadByName.h"

namespace quib {

std::shared_ptr<CPlugin> LoadByName(CPluginFinder& finder, const PluginReference& wanted, ESlotKind kind,
                                    PluginEnvironment& environment, std::string& error) {
    const auto library = finder.Find(wanted, kind);
    if (library) return CPlugin::Load(*library, kind, environment, error);
    error = "not found in any plug-in folder";
    return nullptr;
}

}  // namespace quib
