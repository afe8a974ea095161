// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The settings of a channel strip, each listed once: its member in StripFields and its row in
// kStripSettings, which says how it is named, automated, limited, preset and kept in files. Files,
// presets, lanes, engine and windows go by the table. Constant; any thread.

#include <algorithm>
#include <array>
#include <string_view>

#include "model/CEventLanes.h"
#include "model/CValue.h"
#include "model/StripLimits.h"

namespace quib {

// One value a setting: a CValue in an instrument, a float in a copy of it. Switches are off at 0.
template <class Value>
struct StripFields {
    Value level{};
    Value pan{};  // -1 left .. 1 right
    Value mute{};
    Value crossfadeA{};  // belongs to side A of the crossfader
    Value crossfadeB{};  // belongs to side B
    Value synchro{};     // takes part in pattern synchronisation
    std::array<Value, kInsertCount> insertOn{};
    std::array<Value, kSendCount> sendOn{};
    std::array<Value, kSendCount> sendLevel{};
    Value eqOn{};
    std::array<Value, kEqBandCount> eqFreq{};  // 20 Hz .. 16 kHz
    std::array<Value, kEqBandCount> eqQ{};
    std::array<Value, kEqBandCount> eqGain{};  // -20 dB .. +20 dB
};

// The values of a channel strip at one moment.
using StripValues = StripFields<float>;

// A member of whichever strip it is asked for; made from a generic lambda that gives its address.
class StripMember {
public:
    template <class Reach>
    constexpr StripMember(Reach reach) : settingOf(reach), heldSettingOf(reach), valueOf(reach), heldValueOf(reach) {}

    CValue& operator()(StripFields<CValue>& strip) const noexcept { return *settingOf(strip); }
    const CValue& operator()(const StripFields<CValue>& strip) const noexcept { return *heldSettingOf(strip); }
    constexpr float& operator()(StripValues& values) const noexcept { return *valueOf(values); }
    constexpr const float& operator()(const StripValues& values) const noexcept { return *heldValueOf(values); }

private:
    CValue* (*settingOf)(StripFields<CValue>&);
    const CValue* (*heldSettingOf)(const StripFields<CValue>&);
    float* (*valueOf)(StripValues&);
    const float* (*heldValueOf)(const StripValues&);
};

struct StripLane {
    int index;         // written to files as the number of the lane
    const char* name;  // English
    ELaneKind kind;
    bool automated = true;  // false: named, but no lane that points may go to
};

struct StripRange {
    float minimum;
    float maximum;
    float initial;
};

struct StripKeys {
    std::string_view instrument;
    std::string_view preset;         // the lines of a key that two settings share come in the order of the table
    std::string_view otherPreset{};  // readers take it as well
};

// Where the records of a setting stand; in each part in the order of the table. In an instrument, those of an
// insert stand with its plug-in and are not written without one.
enum class EStripPart : int {
    kMixer,    // before the selected pattern, in an instrument before the arpeggiator
    kInsert1,  // in a preset after the selected pattern
    kInsert2,
    kEffects,  // after the selected pattern
};

struct StripSetting {
    const char* name;  // for windows and undo: names a text, may be that of several settings
    StripLane lane;
    StripRange range;
    StripKeys keys;
    EStripPart part;
    StripMember member;
    bool staysOnReset = false;  // a reset of the instrument leaves it alone
    int eqBand = -1;            // band whose coefficients depend on it

    bool IsSwitch() const noexcept { return lane.kind == ELaneKind::kSwitch; }
    // `value`, which is a number, within the range.
    float Limited(float value) const noexcept { return std::clamp(value, range.minimum, range.maximum); }
};

constexpr StripRange kStripSwitch = {0, 1, 0};
constexpr StripRange kStripSendLevel = {0, 127, 0};
constexpr StripRange kStripEqGain = {-1, 1, 0};
constexpr StripRange kStripEqQ = {0, 1, 0.707F};

// In the order of the records of a preset. The second side of the crossfader goes by the key of the first.
// The bands begin at 100 Hz, 500 Hz and 2000 Hz, on the scale 20 Hz x 800^x.
// clang-format off
inline constexpr auto kStripSettings = std::to_array<StripSetting>({
    {"Level", {0, "Level", ELaneKind::kLevel}, {0, 127, 73.67F},
     {"LEVEL", "PRESET_LEVEL"}, EStripPart::kMixer, [](auto& s) { return &s.level; }},
    {"Pan", {1, "Pan", ELaneKind::kContinuous}, {-1, 1, 0},
     {"PAN", "PRESET_PAN"}, EStripPart::kMixer, [](auto& s) { return &s.pan; }},
    {"Mute", {2, "Mute", ELaneKind::kSwitch}, kStripSwitch,
     {"MUTE", "PRESET_MUTE"}, EStripPart::kMixer, [](auto& s) { return &s.mute; }},
    {"Crossfade A", {24, "CrossfadeA", ELaneKind::kSwitch, false}, kStripSwitch,
     {"CROSSFADEA", "PRESET_CROSSFADEA"}, EStripPart::kMixer, [](auto& s) { return &s.crossfadeA; }},
    {"Crossfade B", {25, "CrossfadeB", ELaneKind::kSwitch, false}, kStripSwitch,
     {"CROSSFADEB", "PRESET_CROSSFADEA", "PRESET_CROSSFADEB"}, EStripPart::kMixer, [](auto& s) { return &s.crossfadeB; }},
    {"Synchro", {23, "Synchro", ELaneKind::kSwitch}, kStripSwitch,
     {"SYNCHRO_INST", "PRESET_SYNCHRO"}, EStripPart::kMixer, [](auto& s) { return &s.synchro; }},
    {"Insert", {13, "Insert1 ON", ELaneKind::kSwitch}, kStripSwitch,
     {"INSERT1_ON", "PRESET_INSERT1_ON"}, EStripPart::kInsert1, [](auto& s) { return &s.insertOn[0]; }, true},
    {"Insert", {14, "Insert2 ON", ELaneKind::kSwitch}, kStripSwitch,
     {"INSERT2_ON", "PRESET_INSERT2_ON"}, EStripPart::kInsert2, [](auto& s) { return &s.insertOn[1]; }, true},
    {"Send", {15, "Send1 ON", ELaneKind::kSwitch}, kStripSwitch,
     {"EFFECT1_ON", "PRESET_EFFECT1_ON"}, EStripPart::kEffects, [](auto& s) { return &s.sendOn[0]; }},
    {"Send level", {16, "Send1 Level", ELaneKind::kLevel}, kStripSendLevel,
     {"EFFECT1_LEVEL", "PRESET_EFFECT1_LEVEL"}, EStripPart::kEffects, [](auto& s) { return &s.sendLevel[0]; }},
    {"Send", {17, "Send2 ON", ELaneKind::kSwitch}, kStripSwitch,
     {"EFFECT2_ON", "PRESET_EFFECT2_ON"}, EStripPart::kEffects, [](auto& s) { return &s.sendOn[1]; }},
    {"Send level", {18, "Send2 Level", ELaneKind::kLevel}, kStripSendLevel,
     {"EFFECT2_LEVEL", "PRESET_EFFECT2_LEVEL"}, EStripPart::kEffects, [](auto& s) { return &s.sendLevel[1]; }},
    {"Send", {19, "Send3 ON", ELaneKind::kSwitch}, kStripSwitch,
     {"EFFECT3_ON", "PRESET_EFFECT3_ON"}, EStripPart::kEffects, [](auto& s) { return &s.sendOn[2]; }},
    {"Send level", {20, "Send3 Level", ELaneKind::kLevel}, kStripSendLevel,
     {"EFFECT3_LEVEL", "PRESET_EFFECT3_LEVEL"}, EStripPart::kEffects, [](auto& s) { return &s.sendLevel[2]; }},
    {"Send", {21, "Send4 ON", ELaneKind::kSwitch}, kStripSwitch,
     {"EFFECT4_ON", "PRESET_EFFECT4_ON"}, EStripPart::kEffects, [](auto& s) { return &s.sendOn[3]; }},
    {"Send level", {22, "Send4 Level", ELaneKind::kLevel}, kStripSendLevel,
     {"EFFECT4_LEVEL", "PRESET_EFFECT4_LEVEL"}, EStripPart::kEffects, [](auto& s) { return &s.sendLevel[3]; }},
    {"Equaliser", {3, "EQ ON", ELaneKind::kSwitch}, kStripSwitch,
     {"EQ_ON", "PRESET_EQ_ON"}, EStripPart::kEffects, [](auto& s) { return &s.eqOn; }, true},
    {"Equaliser", {4, "LP Freq", ELaneKind::kLowPassFrequency}, {0, 1, 0.24076759815216064F},
     {"EQ1_FREQ", "PRESET_EQ1_FREQ"}, EStripPart::kEffects, [](auto& s) { return &s.eqFreq[0]; }, false, 0},
    {"Equaliser", {5, "LP Q", ELaneKind::kResonance}, kStripEqQ,
     {"EQ1_RES", "PRESET_EQ1_RES"}, EStripPart::kEffects, [](auto& s) { return &s.eqQ[0]; }, false, 0},
    {"Equaliser", {6, "LP Gain", ELaneKind::kGain}, kStripEqGain,
     {"EQ1_GAIN", "PRESET_EQ1_GAIN"}, EStripPart::kEffects, [](auto& s) { return &s.eqGain[0]; }, false, 0},
    {"Equaliser", {7, "BP Freq", ELaneKind::kBandPassFrequency}, {0, 1, 0.4815351963043213F},
     {"EQ2_FREQ", "PRESET_EQ2_FREQ"}, EStripPart::kEffects, [](auto& s) { return &s.eqFreq[1]; }, false, 1},
    {"Equaliser", {8, "BP Q", ELaneKind::kResonance}, kStripEqQ,
     {"EQ2_RES", "PRESET_EQ2_RES"}, EStripPart::kEffects, [](auto& s) { return &s.eqQ[1]; }, false, 1},
    {"Equaliser", {9, "BP Gain", ELaneKind::kGain}, kStripEqGain,
     {"EQ2_GAIN", "PRESET_EQ2_GAIN"}, EStripPart::kEffects, [](auto& s) { return &s.eqGain[1]; }, false, 1},
    {"Equaliser", {10, "HP Freq", ELaneKind::kHighPassFrequency}, {0, 1, 0.6889311075210571F},
     {"EQ3_FREQ", "PRESET_EQ3_FREQ"}, EStripPart::kEffects, [](auto& s) { return &s.eqFreq[2]; }, false, 2},
    {"Equaliser", {11, "HP Q", ELaneKind::kResonance}, kStripEqQ,
     {"EQ3_RES", "PRESET_EQ3_RES"}, EStripPart::kEffects, [](auto& s) { return &s.eqQ[2]; }, false, 2},
    {"Equaliser", {12, "HP Gain", ELaneKind::kGain}, kStripEqGain,
     {"EQ3_GAIN", "PRESET_EQ3_GAIN"}, EStripPart::kEffects, [](auto& s) { return &s.eqGain[2]; }, false, 2},
});
// clang-format on

// What a new strip has.
constexpr StripValues InitialStripValues() noexcept {
    StripValues values;
    for (const StripSetting& setting : kStripSettings) setting.member(values) = setting.range.initial;
    return values;
}

}  // namespace quib
