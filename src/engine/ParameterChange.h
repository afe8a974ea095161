// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Parameter changes that playing makes: automation and the ball pad. Render thread; the part of one
// instrument may run on any thread of the pool.

#include <vector>

#include "engine/BlockContext.h"

namespace quib {

// Gives a strip setting a value in its lane's range; an equaliser band is computed anew at once.
void ChangeMixValue(CInstrument& instrument, int lane, float value, double sampleRate) noexcept;

// Sets what the assignments name from the ball's place on one axis, 0..127.
void MoveBall(BlockInstrument& entry, const std::vector<BallAssignment>& assignments, float place,
              double sampleRate) noexcept;

// Lets the next values of all automation count as new.
void ForgetAutomation(BlockContext& block) noexcept;

// Sets a plug-in's parameters from their lanes at a position in steps. Calls `before` before anything changes:
// what is not rendered yet still has the old values. Null does nothing.
template <class Before>
void PlayPluginLanes(CPlugin* plugin, int slot, float position, Before&& before) noexcept {
    if (plugin == nullptr) return;
    for (const CEventLanes::Lane& lane : plugin->lanes.ForRender().Lanes(slot)) {
        const auto value = ValueAt(*lane.points, position, ELaneKind::kContinuous);
        if (!value || !plugin->WouldAutomate(lane.index, *value)) continue;
        before();
        plugin->AutomateParameter(lane.index, *value);
    }
}

}  // namespace quib
