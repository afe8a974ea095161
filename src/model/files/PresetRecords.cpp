// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/PresetRecords.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

#include "model/CInstrument.h"
#include "model/MidiEvents.h"
#include "model/MixLanes.h"
#include "model/files/BallRecords.h"
#include "model/files/EventRecords.h"
#include "model/plugin/CPlugin.h"

namespace quib {

namespace {

constexpr std::size_t kMostIntegers = 65536;

void WriteStrip(CRecordWriter& writer, std::initializer_list<EStripPart> parts, const StripValues& values) {
    for (const StripSetting& setting : kStripSettings) {
        if (std::ranges::find(parts, setting.part) == parts.end()) continue;
        writer.RealLine(setting.keys.preset, setting.member(values));
    }
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

// The first line of a key is that of the first setting with it, later ones are the last one's.
const StripSetting* CPresetReader::SettingOfKey(std::string_view key) const {
    const StripSetting* found = nullptr;
    for (std::size_t row = 0; row < kStripSettings.size(); ++row) {
        const StripSetting& setting = kStripSettings[row];
        if (key == setting.keys.otherPreset) return &setting;
        if (key != setting.keys.preset) continue;
        found = &setting;
        if (!settingSeen[row]) break;
    }
    return found;
}

bool CPresetReader::ReadStripValue(const CRecordReader& line) {
    const StripSetting* const setting = SettingOfKey(line.Key());
    if (setting == nullptr) return false;
    if (!line.HasFields(2)) return true;
    setting->member(preset.strip) = setting->Limited(line.Real(1));
    if (line.Key() == setting->keys.preset)
        settingSeen[static_cast<std::size_t>(setting - kStripSettings.data())] = true;
    return true;
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
    if (key == "PRESET_PATTERNSELECTED") {
        if (line.HasFields(2)) preset.patternSelected = std::clamp(line.Integer(1), 0, kPatternCount - 1);
    } else if (key == "PRESET_STEPNUMBER_MODE") {
        if (!line.HasFields(4)) return true;
        preset.stepNumber = std::clamp(line.Integer(1), 1, kMaximumStepCount);
        preset.stepNumberMode = static_cast<std::int32_t>(ToStepNumberMode(line.Integer(2)));
        preset.stepNumberModeValue = ToStepNumberModeValue(line.Real(3));
    } else if (key == "PRESET_PATTERN_NOTES") {
        notes.Read(line);
    } else if (key == "PRESET_PATTERN_STEPS") {
        notes.ReadSteps(line);
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
        WriteNotes(writer, "PRESET_", pattern, content, preset.patternUsed[index]);
    }
    WriteStrip(writer, {EStripPart::kMixer}, preset.strip);
    writer.IntegerLine("PRESET_PATTERNSELECTED", preset.patternSelected);
    WriteStrip(writer, {EStripPart::kInsert1, EStripPart::kInsert2, EStripPart::kEffects}, preset.strip);
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
