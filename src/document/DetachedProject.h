// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A project for a file that is written on another thread: plug-ins are replaced by names and states, values by copies.
// Calls no plug-in. On the thread of the windows, or while that stands still.

#include <functional>
#include <string>

#include "model/plugin/CPlugin.h"
#include "project/ProjectState.h"

namespace quib {

// What a plug-in's state is taken to be.
using StateOfPlugin = std::function<CPlugin::StoredState(const std::shared_ptr<CPlugin>& plugin)>;

std::shared_ptr<CInstrument> Detached(CInstrument& instrument, const StateOfPlugin& stateOf,
                                      const std::vector<std::int32_t>& heldKeys);
// Master inserts and effects.
void DetachMaster(ProjectState& state, const StateOfPlugin& stateOf);

// The whole file.
std::string BytesOf(const ProjectState& state);

}  // namespace quib
