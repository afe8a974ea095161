// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/PresetRecords.h"

#include <algorithm>
#include <array>
#include <utility>

#include "model/CInstrument.h"
#include "model/MixLanes.h"
#include "model/files/BallRecords.h"
#include "model/files/EventRecords.h"
#include "model/plugin/CPlugin.h"

namespace quib {

namespace {

constexpr std::size_t kMostIntegers = 65536;
constexpr std::int32_t kHighestKey = 127;

struct StripField {
    std::string_view key;
    float& (*value)(StripValues& values);
    float low;
    float high;
};

using Strip = StripValues;
constexpr float kFull = 127;

// In the order in which they are written; the selected pattern stands after synchro. The second side
// of the crossfader goes by the key of the first.
constexpr std::array<StripField, 6> kMixFields = {{
    {"PRESET_LEVEL", [](Strip& s) -> float& { return s.level; }, 0, kFull},
    {"PRESET_PAN", [](Strip& s) -> float& { return s.pan; }, -1, 1},
    {"PRESET_MUTE", [](Strip& s) -> float& { return s.mute; }, 0, 1},
    {"PRESET_CROSSFADEA", [](Strip& s) -> float& { return s.crossfadeA; }, 0, 1},
    {"PRESET_CROSSFADEA", [](Strip& s) -> float& { return s.crossfadeB; }, 0, 1},
    {"PRESET_SYNCHRO", [](Strip& s) -> float& { return s.synchro; }, 0, 1},
}};

constexpr std::array<StripField, 20> kEffectFields = {{
    {"PRESET_INSERT1_ON", [](Strip& s) -> float& { return s.insertOn[0]; }, 0, 1},
    {"PRESET_INSERT2_ON", [](Strip& s) -> float& { return s.insertOn[1]; }, 0, 1},
    {"PRESET_EFFECT1_ON", [](Strip& s) -> float& { return s.sendOn[0]; }, 0, 1},
    {"PRESET_EFFECT1_LEVEL", [](Strip& s) -> float& { return s.sendLevel[0]; }, 0, kFull},
    {"PRESET_EFFECT2_ON", [](Strip& s) -> float& { return s.sendOn[1]; }, 0, 1},
    {"PRESET_EFFECT2_LEVEL", [](Strip& s) -> float& { return s.sendLevel[1]; }, 0, kFull},
    {"PRESET_EFFECT3_ON", [](Strip& s) -> float& { return s.sendOn[2]; }, 0, 1},
    {"PRESET_EFFECT3_LEVEL", [](Strip& s) -> float& { return s.sendLevel[2]; }, 0, kFull},
    {"PRESET_EFFECT4_ON", [](Strip& s) -> float& { return s.sendOn[3]; }, 0, 1},
    {"PRESET_EFFECT4_LEVEL", [](Strip& s) -> float& { return s.sendLevel[3]; }, 0, kFull},
    {"PRESET_EQ_ON", [](Strip& s) -> float& { return s.eqOn; }, 0, 1},
    {"PRESET_EQ1_FREQ", [](Strip& s) -> float& { return s.eqFreq[0]; }, 0, 1},
    {"PRESET_EQ1_RES", [](Strip& s) -> float& { return s.eqQ[0]; }, 0, 1},
    {"PRESET_EQ1_GAIN", [](Strip& s) -> float& { return s.eqGain[0]; }, -1, 1},
    {"PRESET_EQ2_FREQ", [](Strip& s) -> float& { return s.eqFreq[1]; }, 0, 1},
    {"PRESET_EQ2_RES", [](Strip& s) -> float& { return s.eqQ[1]; }, 0, 1},
    {"PRESET_EQ2_GAIN", [](Strip& s) -> float& { return s.eqGain[1]; }, -1, 1},
    {"PRESET_EQ3_FREQ", [](Strip& s) -> float& { return s.eqFreq[2]; }, 0, 1},
    {"PRESET_EQ3_RES", [](Strip& s) -> float& { return s.eqQ[2]; }, 0, 1},
    {"PRESET_EQ3_GAIN", [](Strip& s) -> float& { return s.eqGain[2]; }, -1, 1},
}};

template <std::size_t Count>
bool ReadField(const CRecordReader& line, const std::array<StripField, Count>& fields, StripValues& strip) {
    const std::string_view key = line.Key();
    for (const StripField& field : fields) {
        if (key != field.key) continue;
        if (line.HasFields(2)) field.value(strip) = std::clamp(line.Real(1), field.low, field.high);
        return true;
    }
    return false;
}

template <std::size_t Count>
void WriteFields(CRecordWriter& writer, const std::array<StripField, Count>& fields, StripValues strip) {
    for (const StripField& field : fields) writer.RealLine(field.key, field.value(strip));
}

constexpr std::array<std::string_view, 3> kImageKeys = {"PRESET_PLUGIN_PARAMS", "PRESET_INSERT1_PARAMS",
                                                        "PRESET_INSERT2_PARAMS"};

const std::shared_ptr<const StateImage>& Image(const Preset& preset, std::size_t index) {
    return index == 0 ? preset.pluginState : preset.insertState[index - 1];
}

void SetImage(Preset& preset, std::size_t index, std::string_view bytes) {
    const auto image = std::as_bytes(std::span(bytes.data(), bytes.size()));
    (index == 0 ? preset.pluginState : preset.insertState[index - 1]) =
        std::make_shared<const StateImage>(image.begin(), image.end());
}

}  // namespace

std::vector<std::int32_t> ReadIntegers(const CRecordReader& line, std::int32_t low, std::int32_t high) {
    std::vector<std::int32_t> values;
    CRecordFields fields = line.FieldsFrom(1);
    std::int32_t value = 0;
    while (values.size() < kMostIntegers && fields.Next(value)) {
        if (value >= low && value <= high) values.push_back(value);
    }
    return values;
}

void WriteIntegers(CRecordWriter& writer, std::string_view key, std::span<const std::int32_t> values) {
    if (values.empty()) return;
    writer.Key(key);
    for (const std::int32_t value : values) writer.Integer(value);
    writer.EndLine();
}

bool CPresetReader::ReadLine(CRecordReader& reader) {
    return ReadStripValue(reader) || ReadKeyboard(reader) || ReadPatterns(reader) || ReadImage(reader) ||
           ReadBallRecord(reader, kPresetBallKeys, preset.ballSounds);
}

void CPresetReader::ReadCrossfade(const CRecordReader& line) {
    if (!line.HasFields(2)) return;
    const bool sideB = crossfadeASeen || line.Key() == "PRESET_CROSSFADEB";
    (sideB ? preset.strip.crossfadeB : preset.strip.crossfadeA) = std::clamp(line.Real(1), 0.0F, 1.0F);
    crossfadeASeen = crossfadeASeen || !sideB;
}

bool CPresetReader::ReadStripValue(const CRecordReader& line) {
    if (line.Key().starts_with("PRESET_CROSSFADE")) {
        ReadCrossfade(line);
        return true;
    }
    if (line.Key() == "PRESET_PATTERNSELECTED") {
        if (line.HasFields(2)) preset.patternSelected = std::clamp(line.Integer(1), 0, kPatternCount - 1);
        return true;
    }
    return ReadField(line, kMixFields, preset.strip) || ReadField(line, kEffectFields, preset.strip);
}

bool CPresetReader::ReadKeyboard(const CRecordReader& line) {
    const std::string_view key = line.Key();
    if (key == "PRESET_KEYBOARDON") {
        preset.keyboardOn = line.Integer(1) != 0 ? 1 : 0;
    } else if (key == "PRESET_KEYBOARD_POSITION") {
        preset.keyboardPosition = std::clamp(line.Integer(1), 0, kHighestKey);
    } else if (key == "PRESET_KEYBOARD_KEYS") {
        preset.keyboardKeys = ReadIntegers(line, 0, kHighestKey);
    } else {
        return false;
    }
    return true;
}

bool CPresetReader::ReadPatterns(const CRecordReader& line) {
    const std::string_view key = line.Key();
    if (key == "PRESET_STEPNUMBER_MODE") {
        if (!line.HasFields(4)) return true;
        preset.stepNumber = std::clamp(line.Integer(1), 1, kMaximumStepCount);
        preset.stepNumberMode = static_cast<std::int32_t>(ToStepNumberMode(line.Integer(2)));
        preset.stepNumberModeValue = ToStepNumberModeValue(line.Real(3));
    } else if (key == "PRESET_PATTERN_NOTES") {
        notes.Read(line);
    } else if (key == "PRESET_EVENT_PLUGIN_PARAM") {
        preset.eventPluginParameters = ReadIntegers(line, 0, CPlugin::kMaximumParameters - 1);
    } else if (key == "PRESET_PATTERN_MIDIPARAM_EVENTS") {
        ReadPatternPoints(line, kMidiLaneCount, midiLanes);
    } else if (key == "PRESET_PATTERN_MIXPARAM_EVENTS") {
        ReadPatternPoints(line, kMixLaneCount, mixLanes);
    } else if (key == "PRESET_PATTERN_PLUGINPARAM_EVENTS") {
        ReadPatternPoints(line, CPlugin::kMaximumParameters, pluginLanes);
    } else {
        return false;
    }
    return true;
}

bool CPresetReader::ReadImage(CRecordReader& reader) {
    for (std::size_t i = 0; i < kImageKeys.size(); ++i) {
        if (reader.Key() != kImageKeys[i]) continue;
        if (const auto bytes = reader.TakeBytes(reader.Integer(1))) SetImage(preset, i, *bytes);
        return true;
    }
    return false;
}

Preset CPresetReader::Finish() {
    for (std::size_t i = 0; i < preset.patterns.size(); ++i) {
        preset.patterns[i] = notes.Take(i);
        preset.patternUsed[i] = notes.Used(i);
    }
    preset.midiLanes = midiLanes.Build();
    preset.mixLanes = mixLanes.Build();
    preset.pluginLanes = pluginLanes.Build();
    return std::move(preset);
}

void WritePreset(CRecordWriter& writer, const Preset& preset) {
    writer.MarkerLine("PRESET_ADD");
    writer.Key("PRESET_STEPNUMBER_MODE").Integer(preset.stepNumber).Integer(preset.stepNumberMode);
    writer.Real(preset.stepNumberModeValue).EndLine();
    const CPattern empty;
    for (int pattern = 0; pattern < kPatternCount; ++pattern) {
        const auto index = static_cast<std::size_t>(pattern);
        const CPattern& content = preset.patterns[index] ? *preset.patterns[index] : empty;
        WriteNotes(writer, "PRESET_PATTERN_NOTES", pattern, content, preset.patternUsed[index]);
    }
    WriteFields(writer, kMixFields, preset.strip);
    writer.IntegerLine("PRESET_PATTERNSELECTED", preset.patternSelected);
    WriteFields(writer, kEffectFields, preset.strip);
    WriteBalls(writer, kPresetBallKeys, preset.ballSounds);
    WriteIntegers(writer, "PRESET_EVENT_PLUGIN_PARAM", preset.eventPluginParameters);
    for (int pattern = 0; pattern < kPatternCount; ++pattern) {
        WritePatternPoints(writer, "PRESET_PATTERN_MIDIPARAM_EVENTS", preset.midiLanes, pattern);
        WritePatternPoints(writer, "PRESET_PATTERN_MIXPARAM_EVENTS", preset.mixLanes, pattern);
        WritePatternPoints(writer, "PRESET_PATTERN_PLUGINPARAM_EVENTS", preset.pluginLanes, pattern);
    }
    writer.IntegerLine("PRESET_KEYBOARDON", preset.keyboardOn);
    writer.IntegerLine("PRESET_KEYBOARD_POSITION", preset.keyboardPosition);
    WriteIntegers(writer, "PRESET_KEYBOARD_KEYS", preset.keyboardKeys);
    for (std::size_t i = 0; i < kImageKeys.size(); ++i) {
        if (const auto& image = Image(preset, i)) writer.CountedBytes(kImageKeys[i], *image);
    }
}

}  // namespace quib
