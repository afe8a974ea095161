// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The automatable settings of a channel strip by lane index, and the lanes of the MIDI input and of the
// master section: names and ranges, and how a value reaches the setting that its lane names. Any thread.

#include <array>
#include <optional>

#include "model/CEventLanes.h"
#include "model/ChannelStrip.h"

namespace quib {

// Settings of a strip that have a name.
constexpr int kMixParameterCount = static_cast<int>(kStripSettings.size());

// Lane indices of an instrument lie below it. Not all of them need be lanes: see IsMixLane.
constexpr int kMixLaneCount = [] {
    int count = 0;
    for (const StripSetting& setting : kStripSettings) {
        if (setting.lane.automated) count = std::max(count, setting.lane.index + 1);
    }
    return count;
}();

constexpr int kMidiLaneCount = 4;

enum MidiLane : int { kPitchBendLane, kModulationWheelLane, kAftertouchLane, kProgramChangeLane };

// Descriptions of kMixParameterCount settings and of the four MIDI lanes.
const std::array<LaneDescription, kMixParameterCount>& MixParameters();
const std::array<LaneDescription, kMidiLaneCount>& MidiLanes();

// Lanes of the master section: level, crossfader, the two insert switches, tempo.
constexpr int kMasterLaneCount = 5;
constexpr std::size_t kTempoLane = 4;
const std::array<LaneDescription, kMasterLaneCount>& MasterLanes();

// The strip setting behind a mix parameter, or null for an index out of range.
const StripSetting* MixSetting(int parameter) noexcept;

// False for an index out of range and for settings that have a name alone.
bool IsMixLane(int index) noexcept;

// Gives a strip setting `value`, limited to the parameter's range. Returns its row, or null, and does
// nothing, for an index out of range or a value that is no number.
const StripSetting* SetMixValue(ChannelStrip& strip, int parameter, float value) noexcept;

// The value in a lane's range for a normalised one, 0..1; nothing where there is no lane.
std::optional<float> MixValueOf(int lane, float normalised) noexcept;

}  // namespace quib
