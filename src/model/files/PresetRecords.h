// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The records of one preset inside an instrument. Editing thread.

#include <array>
#include <span>
#include <string_view>

#include "model/Preset.h"
#include "model/files/CRecordReader.h"
#include "model/files/CRecordWriter.h"
#include "model/files/PatternRecords.h"

namespace quib {

// Fills one preset from the lines that follow its opening record.
class CPresetReader {
public:
    // Applies the current line, and takes the bytes that belong to it. False for another key.
    bool ReadLine(CRecordReader& reader);
    Preset Finish();

private:
    bool ReadStripValue(const CRecordReader& line);
    bool ReadKeyboard(const CRecordReader& line);
    bool ReadPatterns(const CRecordReader& line);
    bool ReadImage(CRecordReader& reader);
    const StripSetting* SettingOfKey(std::string_view key) const;

    Preset preset;
    CNoteReader notes;
    CEventLanesBuilder midiLanes;
    CEventLanesBuilder mixLanes;
    CEventLanesBuilder pluginLanes;
    std::array<bool, kStripSettings.size()> settingSeen{};
};

void WritePreset(CRecordWriter& writer, const Preset& preset);

// List lines of integers: "KEY;value;value;...". An empty list is not written. Reading leaves out
// values outside [low, high] and stops at 65536 values.
std::vector<std::int32_t> ReadIntegers(const CRecordReader& line, std::int32_t low, std::int32_t high);
void WriteIntegers(CRecordWriter& writer, std::string_view key, std::span<const std::int32_t> values);

}  // namespace quib
