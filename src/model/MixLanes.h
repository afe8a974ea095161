// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The automatable settings of a channel strip and of the MIDI input, by lane index: names and ranges,
// and how a value reaches the setting that its lane names. Any thread.

#include <array>
#include <span>

#include "model/CEventLanes.h"
#include "model/ChannelStrip.h"

namespace quib {

constexpr int kMixLaneCount = 24;       // lanes that an instrument has
constexpr int kMixParameterCount = 26;  // settings that have a name; the last two have no lane
constexpr int kMidiLaneCount = 4;

enum MidiLane : int { kPitchBendLane, kModulationWheelLane, kAftertouchLane, kProgramChangeLane };

// Descriptions of kMixParameterCount settings and of the four MIDI lanes.
const std::array<LaneDescription, kMixParameterCount>& MixParameters();
const std::array<LaneDescription, kMidiLaneCount>& MidiLanes();

// Lanes of the master section: level, crossfader, the two insert switches, tempo.
constexpr int kMasterLaneCount = 5;
const std::array<LaneDescription, kMasterLaneCount>& MasterLanes();

// The setting behind a mix parameter, or null for an index out of range.
CValue* MixSetting(ChannelStrip& strip, int parameter) noexcept;

// The equaliser band (0..2) whose coefficients depend on a mix parameter, or -1.
int EqBandOfMixParameter(int parameter) noexcept;

// Gives a strip setting `value`, limited to the parameter's range. Returns false, and does nothing,
// for an index out of range or a value that is no number.
bool SetMixValue(ChannelStrip& strip, int parameter, float value) noexcept;

// The same for a normalised value 0..1 of one of the lanes that exist.
bool SetNormalisedMixValue(ChannelStrip& strip, int lane, float normalised) noexcept;

}  // namespace quib
