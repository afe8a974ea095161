// SPDX-License-Identifier: GPL-3.0-or-later
#include <string>

#include "model/files/ControlRecords.h"
#include "model/files/EventRecords.h"
#include "model/files/InstrumentFile.h"
#include "model/files/SlotRecords.h"
#include "platform/CAtomicFile.h"
#include "project/ProjectFields.h"
#include "project/ProjectFile.h"

namespace quib {

namespace {

constexpr std::string_view kFileVersion = "1.5";

// The fields only read through the state, but their table is shared with the reader.
void WriteFields(CRecordWriter& writer, std::span<const ProjectField> fields, ProjectState& state) {
    for (const ProjectField& field : fields) {
        if (field.integer != nullptr) {
            writer.IntegerLine(field.key, field.integer(state));
        } else {
            writer.Real6Line(field.key, field.real(state));
        }
    }
}

void WriteHead(CRecordWriter& writer, const ProjectState& state) {
    ProjectState settings;
    settings.master = state.master;
    settings.detector = state.detector;
    writer.TextLine("VERSION", kFileVersion);
    WriteFields(writer, MasterFields(), settings);
    writer.Key("PRESET_MIDI");
    for (const std::int32_t value : state.master.presetMidi) writer.Integer(value);
    writer.EndLine();
    WriteFields(writer, DetectorFields(), settings);
    if (state.master.timeSignature[0] > 0) {
        writer.Key("TIME_SIGNATURE");
        for (const std::int32_t value : state.master.timeSignature) writer.Integer(value);
        writer.EndLine();
    }
    for (const SongMarker& marker : state.markers) {
        writer.Key("SONG_MARKER").Integer(marker.step).Text(marker.name).EndLine();
    }
    for (const ControlBinding& binding : state.bindings) WriteBinding(writer, binding);
}

void WriteMasterInsert(CRecordWriter& writer, const MasterInsert& insert, const std::string& number) {
    if (IsEmpty(*insert.slot)) return;
    WriteSlotName(writer, "MASTER_INSERT" + number + "_PLUGIN", *insert.slot, ESlotName::kListed);
    writer.RealLine("MASTER_INSERT" + number + "_ON", insert.on);
    WriteState(writer, "MASTER_INSERT_PRESET_" + number, *insert.slot);
    WriteEvents(writer, "MASTER_INSERT_PARAM_EVENTS_" + number, *insert.slot);
}

void WriteEffect(CRecordWriter& writer, const PluginSlot& slot, const std::string& number) {
    if (IsEmpty(slot)) return;
    WriteSlotName(writer, "EFFECT_" + number, slot, ESlotName::kListed);
    WriteState(writer, "EFFECT_PRESET_" + number, slot);
    WriteEvents(writer, "EFFECT_PARAM_EVENTS_" + number, slot);
}

void WriteInstruments(CRecordWriter& writer, const ProjectState& state, const HeldKeys& heldKeys) {
    for (const auto& instrument : state.instruments) {
        const auto keys = heldKeys ? heldKeys(*instrument) : instrument->play.heldKeys.Items();
        WriteInstrument(writer, *instrument, keys);
        writer.TextLine("PLUGIN", "END");
    }
}

}  // namespace

void WriteProject(CRecordWriter& writer, const ProjectState& state, const HeldKeys& heldKeys) {
    WriteHead(writer, state);
    for (std::size_t i = 0; i < state.masterInserts.size(); ++i) {
        WriteMasterInsert(writer, state.masterInserts[i], std::to_string(i + 1));
    }
    WriteSongPoints(writer, "MASTER_MIX_EVENTS", state.masterLanes);
    WriteInstruments(writer, state, heldKeys);
    for (std::size_t i = 0; i < state.effects.size(); ++i) {
        WriteEffect(writer, *state.effects[i], std::to_string(i + 1));
    }
}

bool WriteProjectFile(const std::filesystem::path& path, const ProjectState& state, std::string& error,
                      const HeldKeys& heldKeys) {
    CRecordWriter writer;
    WriteProject(writer, state, heldKeys);
    return CAtomicFile().Replace(path, writer.Bytes(), error);
}

}  // namespace quib
