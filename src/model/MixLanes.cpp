// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/MixLanes.h"

#include <algorithm>
#include <cmath>

namespace quib {

namespace {

LaneDescription Continuous(const char* name, float minimum, float maximum, LaneKind kind = LaneKind::Continuous) {
    return {name, minimum, maximum, 0.0F, kind};
}

LaneDescription Switch(const char* name) { return {name, 0.0F, 1.0F, 2.0F, LaneKind::Switch}; }

constexpr int kFirstEqLane = 4;
constexpr int kInsertLane = 13;
constexpr int kFirstSendLane = 15;
constexpr int kSynchroLane = 23;

}  // namespace

const std::array<LaneDescription, kMixParameterCount>& MixParameters() {
    static const std::array<LaneDescription, kMixParameterCount> table = {
        Continuous("Level", 0, 127, LaneKind::Level),
        Continuous("Pan", -1, 1),
        Switch("Mute"),
        Switch("EQ ON"),
        Continuous("LP Freq", 0, 1, LaneKind::LowPassFrequency),
        Continuous("LP Q", 0, 1, LaneKind::Resonance),
        Continuous("LP Gain", -1, 1, LaneKind::Gain),
        Continuous("BP Freq", 0, 1, LaneKind::BandPassFrequency),
        Continuous("BP Q", 0, 1, LaneKind::Resonance),
        Continuous("BP Gain", -1, 1, LaneKind::Gain),
        Continuous("HP Freq", 0, 1, LaneKind::HighPassFrequency),
        Continuous("HP Q", 0, 1, LaneKind::Resonance),
        Continuous("HP Gain", -1, 1, LaneKind::Gain),
        Switch("Insert1 ON"),
        Switch("Insert2 ON"),
        Switch("Send1 ON"),
        Continuous("Send1 Level", 0, 127, LaneKind::Level),
        Switch("Send2 ON"),
        Continuous("Send2 Level", 0, 127, LaneKind::Level),
        Switch("Send3 ON"),
        Continuous("Send3 Level", 0, 127, LaneKind::Level),
        Switch("Send4 ON"),
        Continuous("Send4 Level", 0, 127, LaneKind::Level),
        Switch("Synchro"),
        Switch("CrossfadeA"),
        Switch("CrossfadeB"),
    };
    return table;
}

const std::array<LaneDescription, kMidiLaneCount>& MidiLanes() {
    static const std::array<LaneDescription, kMidiLaneCount> table = {
        Continuous("Pitch Bend", 0, 127),
        Continuous("Modulation Wheel", 0, 127),
        Continuous("Aftertouch", 0, 127),
        Continuous("ProgramChange", 0, 127, LaneKind::ProgramChange),
    };
    return table;
}

const std::array<LaneDescription, kMasterLaneCount>& MasterLanes() {
    static const std::array<LaneDescription, kMasterLaneCount> table = {
        Continuous("Level", 0, 127, LaneKind::Level),
        Continuous("Crossfader", 0, 127),
        Switch("Insert1 ON"),
        Switch("Insert2 ON"),
        Continuous("Tempo", 20, 300),
    };
    return table;
}

CValue* MixSetting(ChannelStrip& strip, int parameter) noexcept {
    if (parameter >= kFirstEqLane && parameter < kInsertLane) {
        const auto band = static_cast<std::size_t>((parameter - kFirstEqLane) / 3);
        switch ((parameter - kFirstEqLane) % 3) {
            case 0:
                return &strip.eqFreq[band];
            case 1:
                return &strip.eqQ[band];
            default:
                return &strip.eqGain[band];
        }
    }
    if (parameter >= kFirstSendLane && parameter < kSynchroLane) {
        const auto send = static_cast<std::size_t>((parameter - kFirstSendLane) / 2);
        return (parameter - kFirstSendLane) % 2 == 0 ? &strip.sendOn[send] : &strip.sendLevel[send];
    }
    switch (parameter) {
        case 0:
            return &strip.level;
        case 1:
            return &strip.pan;
        case 2:
            return &strip.mute;
        case 3:
            return &strip.eqOn;
        case kInsertLane:
            return &strip.insertOn[0];
        case kInsertLane + 1:
            return &strip.insertOn[1];
        case kSynchroLane:
            return &strip.synchro;
        case kSynchroLane + 1:
            return &strip.crossfadeA;
        case kSynchroLane + 2:
            return &strip.crossfadeB;
        default:
            return nullptr;
    }
}

int EqBandOfMixParameter(int parameter) noexcept {
    return parameter >= kFirstEqLane && parameter < kInsertLane ? (parameter - kFirstEqLane) / 3 : -1;
}

bool SetMixValue(ChannelStrip& strip, int parameter, float value) noexcept {
    CValue* const setting = MixSetting(strip, parameter);
    if (setting == nullptr || std::isnan(value)) return false;
    const LaneDescription& range = MixParameters()[static_cast<std::size_t>(parameter)];
    setting->Set(std::clamp(value, range.minimum, range.maximum));
    return true;
}

bool SetNormalisedMixValue(ChannelStrip& strip, int lane, float normalised) noexcept {
    if (lane < 0 || lane >= kMixLaneCount) return false;
    const LaneDescription& range = MixParameters()[static_cast<std::size_t>(lane)];
    return SetMixValue(strip, lane, range.minimum + (range.maximum - range.minimum) * normalised);
}

}  // namespace quib
