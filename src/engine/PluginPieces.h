// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A plug-in of the master section over a block, in pieces where its song automation or musical time wants
// them. Render thread.

#include <algorithm>

#include "engine/BlockTime.h"
#include "engine/ParameterChange.h"

namespace quib {

// Calls `render(begin, end)`, frames of the block, for every stretch in which nothing changes.
template <class Render>
void RenderInPieces(CPlugin& plugin, const BlockContext& block, Render&& render) noexcept {
    int begin = 0;
    const auto renderTo = [&](int end) {
        if (end <= begin) return;
        plugin.SetBlockTime(TimeAt(block, begin));
        render(begin, end);
        begin = end;
    };
    const bool automated = block.songMode && !plugin.lanes.ForRender().Lanes(CEventLanes::kSongSlot).empty();
    if (automated || block.grid.Breaks()) {
        for (const GridPoint& point : block.grid.Points()) {
            if (point.breaks) renderTo(point.frame);
            if (!automated) continue;
            PlayPluginLanes(&plugin, CEventLanes::kSongSlot, block.grid.PositionOf(point),
                            [&] { renderTo(point.frame); });
        }
    }
    renderTo(block.frames);
}

}  // namespace quib
