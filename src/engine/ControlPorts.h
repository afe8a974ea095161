// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where the targets of MIDI controllers are in a block, as shares of their ranges. Render thread, but for the tables,
// which are constant.

#include <optional>
#include <span>

#include "engine/BlockContext.h"

namespace quib {

// A setting that a controller may move and that is no setting of a strip.
template <class Owner>
struct ControlPort {
    const char* name;  // for windows: names a text
    CValue& (*value)(Owner& owner);
    float minimum;
    float maximum;
    int lane = -1;  // of the automation
    bool isSwitch = false;
};

// By the index of a target of kind kMaster, or kInstrument.
std::span<const ControlPort<EngineSettings>> MasterControls() noexcept;
std::span<const ControlPort<CInstrument>> InstrumentControls() noexcept;

// What a target is now, 0..1; nothing for one that is not in the block, and for actions.
std::optional<float> ReadControl(const ControlTarget& target, BlockContext& block, EngineSettings& settings) noexcept;
// Sets it, and takes hold of it where it has automation. False when it is not in the block.
bool WriteControl(const ControlTarget& target, float share, BlockContext& block, EngineSettings& settings) noexcept;

}  // namespace quib
