// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <utility>

#include "engine/BlockContext.h"
#include "model/MixLanes.h"
#include "model/control/CControlMap.h"
#include "model/files/ControlRecords.h"
#include "model/files/EventRecords.h"
#include "model/files/InstrumentFile.h"
#include "model/files/SlotRecords.h"
#include "platform/CFileBytes.h"
#include "project/ProjectFields.h"
#include "project/ProjectFile.h"

namespace quib {

namespace {

// The number stands inside some of these keys and at the end of others.
struct SlotKeys {
    std::string_view plugin;
    std::string_view preset;
    std::string_view events;
};
constexpr std::array<SlotKeys, kMasterInsertCount> kInsertKeys = {{
    {"MASTER_INSERT1_PLUGIN", "MASTER_INSERT_PRESET_1", "MASTER_INSERT_PARAM_EVENTS_1"},
    {"MASTER_INSERT2_PLUGIN", "MASTER_INSERT_PRESET_2", "MASTER_INSERT_PARAM_EVENTS_2"},
}};
constexpr std::array<std::string_view, kMasterInsertCount> kInsertSwitchKeys = {"MASTER_INSERT1_ON",
                                                                                "MASTER_INSERT2_ON"};
constexpr std::array<SlotKeys, kSharedEffectCount> kEffectKeys = {{
    {"EFFECT_1", "EFFECT_PRESET_1", "EFFECT_PARAM_EVENTS_1"},
    {"EFFECT_2", "EFFECT_PRESET_2", "EFFECT_PARAM_EVENTS_2"},
    {"EFFECT_3", "EFFECT_PRESET_3", "EFFECT_PARAM_EVENTS_3"},
    {"EFFECT_4", "EFFECT_PRESET_4", "EFFECT_PARAM_EVENTS_4"},
}};

class CProjectReader {
public:
    CProjectReader(std::string_view bytes, const PluginLoader& load, const LoadProgress& loadProgress)
        : size(bytes.size()), reader(bytes), progress(loadProgress) {
        context.load = load;
    }

    bool Read(ProjectState& result, std::string& error);

private:
    bool ReadRecord();
    bool ReadField(std::span<const ProjectField> fields);
    bool ReadOtherSetting();
    bool ReadSlots();
    bool ReadSlotRecord(const SlotKeys& keys, CSlotReader& slot);
    void ReadNextInstrument();
    void AskToGoOn(std::string_view next);
    void Finish();

    std::size_t size;
    CRecordReader reader;
    LoadContext context;
    const LoadProgress& progress;
    ProjectState state;
    std::array<CSlotReader, kMasterInsertCount> inserts;
    std::array<CSlotReader, kSharedEffectCount> effects;
    CEventLanesBuilder masterLanes;
    bool stopped = false;
};

bool CProjectReader::ReadField(std::span<const ProjectField> fields) {
    const std::string_view key = reader.Key();
    for (const ProjectField& field : fields) {
        if (key != field.key) continue;
        if (field.integer != nullptr) {
            field.integer(state) = std::clamp(reader.Integer(1), static_cast<std::int32_t>(field.low),
                                              static_cast<std::int32_t>(field.high));
        } else {
            const float value = reader.Real(1);
            if (!field.isPositive || value > 0) field.real(state) = std::clamp(value, field.low, field.high);
        }
        return true;
    }
    return false;
}

bool CProjectReader::ReadOtherSetting() {
    const std::string_view key = reader.Key();
    if (key == "PRESET_MIDI") {
        if (!reader.HasFields(4)) return true;
        for (std::size_t i = 0; i < state.master.presetMidi.size(); ++i) {
            state.master.presetMidi[i] = reader.Integer(i + 1);
        }
        return true;
    }
    if (key == "TIME_SIGNATURE") {
        if (reader.HasFields(3)) {
            state.master.timeSignature = {std::clamp(reader.Integer(1), 1, 32), std::clamp(reader.Integer(2), 1, 16)};
        }
        return true;
    }
    if (key == "SONG_MARKER") {
        if (reader.HasFields(3)) {
            const std::int32_t step = std::clamp(reader.Integer(1), 0, kMaximumSongStep);
            state.markers = WithMarker(state.markers, step, std::string(reader.Text(2)));
        }
        return true;
    }
    if (key == kBindingKey) {
        const auto binding = ReadBinding(reader);
        if (binding && state.bindings.size() < CControlMap::kMostBindings) state.bindings.push_back(*binding);
        return true;
    }
    if (key == "MASTER_MIX_EVENTS") {
        ReadSongPoints(reader, kMasterLaneCount, masterLanes);
        return true;
    }
    for (std::size_t i = 0; i < kInsertSwitchKeys.size(); ++i) {
        if (key != kInsertSwitchKeys[i]) continue;
        state.masterInserts[i].on = std::clamp(reader.Real(1), 0.0F, 1.0F);
        return true;
    }
    return key == "VERSION";  // every version is read alike
}

bool CProjectReader::ReadSlotRecord(const SlotKeys& keys, CSlotReader& slot) {
    const std::string_view key = reader.Key();
    if (key == keys.plugin) {
        AskToGoOn(reader.Text(1));
        if (!stopped) slot.Load(reader, ESlotKind::kEffect, context);
    } else if (key == keys.preset) {
        if (OpensBracket(reader)) slot.ReadState(reader, context);
    } else if (key == keys.events) {
        if (OpensBracket(reader)) slot.ReadEvents(reader, context);
    } else {
        return false;
    }
    return true;
}

bool CProjectReader::ReadSlots() {
    for (std::size_t i = 0; i < inserts.size(); ++i) {
        if (ReadSlotRecord(kInsertKeys[i], inserts[i])) return true;
    }
    for (std::size_t i = 0; i < effects.size(); ++i) {
        if (ReadSlotRecord(kEffectKeys[i], effects[i])) return true;
    }
    return false;
}

void CProjectReader::ReadNextInstrument() {
    if (state.instruments.size() >= kMaximumInstruments) {
        return context.Warn("instruments", "there are too many; one is left out");
    }
    AskToGoOn(reader.Text(1));
    if (stopped) return;
    reader.RepeatLine();
    bool ended = false;
    auto instrument = ReadInstrument(reader, context, ended);
    if (!instrument) return;
    if (!ended) context.Warn(instrument->title, "its end is missing in the file");
    state.instruments.push_back(std::move(instrument));
}

void CProjectReader::AskToGoOn(std::string_view next) {
    if (!progress || size == 0) return;
    const float share = static_cast<float>(reader.Position()) / static_cast<float>(size);
    if (!progress(share, std::string(next))) stopped = true;
}

bool CProjectReader::ReadRecord() {
    if (!reader.HasFields(2)) return false;
    if (reader.Key() == "PLUGIN") {
        if (!ClosesBracket(reader)) ReadNextInstrument();
        return true;
    }
    return ReadField(MasterFields()) || ReadField(DetectorFields()) || ReadOtherSetting() || ReadSlots();
}

void CProjectReader::Finish() {
    for (std::size_t i = 0; i < inserts.size(); ++i) {
        state.masterInserts[i].slot = inserts[i].Finish(context, "master insert " + std::to_string(i + 1));
    }
    for (std::size_t i = 0; i < effects.size(); ++i) {
        state.effects[i] = effects[i].Finish(context, "send " + std::to_string(i + 1));
    }
    state.masterLanes = masterLanes.Build();
    if (reader.IsCutOff()) context.Warn("file", "it ends inside a line; what followed is lost");
    state.warnings = std::move(context.warnings);
}

bool CProjectReader::Read(ProjectState& result, std::string& error) {
    bool recognised = false;
    while (!stopped && reader.NextLine()) {
        if (ReadRecord()) recognised = true;
    }
    if (stopped || !recognised) {
        error = stopped ? "stopped" : "not a project file";
        return false;
    }
    Finish();
    result = std::move(state);
    return true;
}

}  // namespace

bool ReadProject(std::string_view bytes, const PluginLoader& load, ProjectState& state, std::string& error,
                 const LoadProgress& progress) {
    return CProjectReader(bytes, load, progress).Read(state, error);
}

bool ReadProjectFile(const std::filesystem::path& path, const PluginLoader& load, ProjectState& state,
                     std::string& error, const LoadProgress& progress) {
    CFileBytes file;
    if (!file.Read(path, error)) return false;
    if (ReadProject(file.View(), load, state, error, progress)) return true;
    error = path.string() + ": " + error;
    return false;
}

}  // namespace quib
