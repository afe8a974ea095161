// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Makes plug-ins and instruments ready for the format of a device. Editing thread, while no block can
// reach what is prepared.

#include "engine/RenderFormat.h"
#include "model/CInstrument.h"

namespace quib {

// Tells the plug-in in the slot, if any, its format.
void PreparePlugin(const CPublished<PluginSlot>& slot);

// For a format that has changed: everything of the instrument anew.
void RebuildInstrument(CInstrument& instrument, const RenderFormat& format);

// Before it is published: one that was published before and comes back in the same format keeps its
// playing state.
void PrepareInstrument(CInstrument& instrument, const RenderFormat& format);

}  // namespace quib
