// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CMasterPlan.h"

#include <algorithm>

namespace quib {

namespace {

// True when a setting has changed. The tempo is the steps' own affair.
bool PlayLanes(std::span<const CEventLanes::Lane> lanes, float position, EngineSettings& settings) noexcept {
    bool changed = false;
    for (const CEventLanes::Lane& lane : lanes) {
        CValue* const setting = EngineSetting(settings, lane.index);
        if (setting == nullptr || lane.index == static_cast<int>(kTempoLane)) continue;
        if ((settings.heldLanes.Get() >> lane.index & 1U) != 0) continue;
        const LaneDescription& range = MasterLanes()[static_cast<std::size_t>(lane.index)];
        const auto value = ValueAt(*lane.points, position, range.kind);
        if (!value) continue;
        const float limited = std::clamp(*value, range.minimum, range.maximum);
        changed = changed || limited != setting->Get();
        setting->Set(limited);
    }
    return changed;
}

}  // namespace

void CMasterPlan::Play(const BlockContext& block, EngineSettings& settings) noexcept {
    pieces.clear();
    Add(settings, 0);
    const auto lanes =
        block.songMode ? block.masterLanes->Lanes(CEventLanes::kSongSlot) : std::span<const CEventLanes::Lane>();
    if (lanes.empty()) return;
    for (const GridPoint& point : block.grid.Points()) {
        if (PlayLanes(lanes, block.grid.PositionOf(point), settings)) Add(settings, point.frame);
    }
}

void CMasterPlan::Add(const EngineSettings& settings, int frame) noexcept {
    if (frame == 0) pieces.clear();
    pieces.push_back({frame,
                      settings.masterLevel.Get(),
                      settings.crossfader.Get(),
                      {settings.masterInsertOn[0].IsOn(), settings.masterInsertOn[1].IsOn()}});
}

}  // namespace quib
