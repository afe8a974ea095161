// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/Measured.h"
#include "model/plugin/vst2/CVst2Plugin.h"

namespace quib {

std::optional<MeasuredLevel> AskMeasured(CPlugin& plugin) {
    auto* const asked = dynamic_cast<CVst2Plugin*>(&plugin);
    if (asked == nullptr || !plugin.Identity().effectName.starts_with("QUIB ")) return std::nullopt;
    vst2::Measured told{};
    if (asked->Dispatch(vst2::effVendorSpecific, vst2::kTellMeasured, 0, &told) != 1) return std::nullopt;
    return MeasuredLevel{told.level, told.reduction};
}

}  // namespace quib
