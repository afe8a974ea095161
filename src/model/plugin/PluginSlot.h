// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What stands in a place for a plug-in: a loaded one, nothing, or the name and stored state of one
// that is missing on this machine. Published whole.

#include <cstdint>
#include <memory>
#include <string>

#include "model/CEventLanes.h"
#include "model/Preset.h"

namespace quib {

class CPlugin;

// Kept so that a project can be saved again without loss.
struct MissingPlugin {
    std::string fileName;     // as in the file that named it
    std::string identity;     // likewise; empty if it told none
    std::string displayName;  // likewise; empty if it told none
    std::shared_ptr<const StateImage> state;
    std::int32_t program = 0;
    CEventLanes lanes;
};

struct PluginSlot {
    std::shared_ptr<CPlugin> plugin;               // null: none
    std::shared_ptr<const MissingPlugin> missing;  // null unless a plug-in could not be loaded
};

}  // namespace quib
