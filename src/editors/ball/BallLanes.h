// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which lanes a ball's assignments move. Plain functions, any thread.

#include <algorithm>
#include <array>

#include "document/CLanes.h"

namespace quib {

inline EBallTarget TargetOf(ELaneGroup group) noexcept {
    if (group == ELaneGroup::kPlugin) return EBallTarget::kPlugin;
    if (group == ELaneGroup::kMix) return EBallTarget::kMix;
    return group == ELaneGroup::kInsert1 ? EBallTarget::kInsert1 : EBallTarget::kInsert2;
}

inline ELaneGroup GroupOf(EBallTarget target) noexcept {
    constexpr std::array kGroups = {ELaneGroup::kPlugin, ELaneGroup::kMix, ELaneGroup::kInsert1, ELaneGroup::kInsert2};
    return kGroups[static_cast<std::size_t>(std::clamp(static_cast<int>(target), 0, 3))];
}

}  // namespace quib
