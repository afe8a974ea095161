// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/LoopFolders.h"

#include "document/CWorkstation.h"

namespace quib {

// One of them has the folders read for all of its library.
void FollowLoopFolders(CWorkstation& document) {
    document.Places().ForEachSlot([](const PluginSlot& slot, const SlotPlace&) {
        if (slot.plugin) slot.plugin->CountLoops();
    });
}

}  // namespace quib
