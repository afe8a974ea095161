// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/MixLanes.h"

#include <cmath>

namespace quib {

namespace {

// Rows of the settings by lane index.
using MixRows = std::array<int, kMixParameterCount>;
constexpr MixRows kMixRows = [] {
    MixRows rows{};
    rows.fill(-1);
    for (std::size_t row = 0; row < kStripSettings.size(); ++row) {
        rows[static_cast<std::size_t>(kStripSettings[row].lane.index)] = static_cast<int>(row);
    }
    return rows;
}();
static_assert(std::ranges::count(kMixRows, -1) == 0, "two settings have the same lane index");

LaneDescription Continuous(const char* name, float minimum, float maximum, ELaneKind kind = ELaneKind::kContinuous) {
    return {name, minimum, maximum, 0.0F, kind};
}

LaneDescription Switch(const char* name) { return {name, 0.0F, 1.0F, 2.0F, ELaneKind::kSwitch}; }

std::array<LaneDescription, kMixParameterCount> Describe(const MixRows& rows) {
    std::array<LaneDescription, kMixParameterCount> descriptions;
    std::ranges::transform(rows, descriptions.begin(), [](int row) {
        const StripSetting& setting = kStripSettings[static_cast<std::size_t>(row)];
        if (setting.IsSwitch()) return Switch(setting.lane.name);
        return Continuous(setting.lane.name, setting.range.minimum, setting.range.maximum, setting.lane.kind);
    });
    return descriptions;
}

const std::array<LaneDescription, kMixParameterCount> kMixParameters = Describe(kMixRows);

const std::array<LaneDescription, kMidiLaneCount> kMidiLanes = {
    Continuous("Pitch Bend", 0, 127),
    Continuous("Modulation Wheel", 0, 127),
    Continuous("Aftertouch", 0, 127),
    Continuous("ProgramChange", 0, 127, ELaneKind::kProgram),
};

const std::array<LaneDescription, kMasterLaneCount> kMasterLanes = {
    Continuous("Level", 0, 127, ELaneKind::kLevel),
    Continuous("Crossfader", 0, 127),
    Switch("Insert1 ON"),
    Switch("Insert2 ON"),
    Continuous("Tempo", 20, 300),
};

}  // namespace

const std::array<LaneDescription, kMixParameterCount>& MixParameters() { return kMixParameters; }
const std::array<LaneDescription, kMidiLaneCount>& MidiLanes() { return kMidiLanes; }
const std::array<LaneDescription, kMasterLaneCount>& MasterLanes() { return kMasterLanes; }

const StripSetting* MixSetting(int parameter) noexcept {
    if (parameter < 0 || parameter >= kMixParameterCount) return nullptr;
    return &kStripSettings[static_cast<std::size_t>(kMixRows[static_cast<std::size_t>(parameter)])];
}

bool IsMixLane(int index) noexcept {
    const StripSetting* const setting = MixSetting(index);
    return setting != nullptr && setting->lane.automated;
}

const StripSetting* SetMixValue(ChannelStrip& strip, int parameter, float value) noexcept {
    const StripSetting* const setting = MixSetting(parameter);
    if (setting == nullptr || std::isnan(value)) return nullptr;
    setting->member(strip).Set(setting->Limited(value));
    return setting;
}

std::optional<float> MixValueOf(int lane, float normalised) noexcept {
    if (!IsMixLane(lane)) return std::nullopt;
    const StripRange& range = MixSetting(lane)->range;
    return range.minimum + (range.maximum - range.minimum) * normalised;
}

}  // namespace quib
