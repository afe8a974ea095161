// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What keys and controllers make happen that is no value: patterns, presets, solo, transport. User-interface thread.

#include "model/control/ControlBinding.h"

namespace quib {

class CWorkstation;

// A target that is gone, or that is no action, does nothing.
void RunControlAction(CWorkstation& station, const ControlTarget& target);

}  // namespace quib
