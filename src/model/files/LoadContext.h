// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the readers of files need from their caller, and what they tell it beside the result. Lives for
// one reading, on the editing thread.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "model/plugin/CPlugin.h"

namespace quib {

// Finds and loads a plug-in that a file names. Null when that is not possible; `error` then says why.
using PluginLoader =
    std::function<std::shared_ptr<CPlugin>(const PluginReference& wanted, ESlotKind kind, std::string& error)>;

struct LoadContext {
    PluginLoader load;                  // unset: every plug-in counts as missing
    std::vector<std::string> warnings;  // one line each: what was left out, and why

    void Warn(const std::string& about, const std::string& what) {
        constexpr std::size_t most = 1000;  // a damaged file may have something wrong in every line
        if (warnings.size() < most) warnings.push_back(about + ": " + what);
    }

    // One line for each plug-in that is not there, with all the places that want it.
    void WarnMissing(const std::string& plugin, const std::string& reason, const std::string& place) {
        const std::string line = plugin + ": " + reason + "; its settings are kept (";
        for (std::string& warning : warnings) {
            if (warning.starts_with(line)) return void(warning.replace(warning.size() - 1, 1, ", " + place + ")"));
        }
        Warn(plugin, reason + "; its settings are kept (" + place + ")");
    }
};

}  // namespace quib
