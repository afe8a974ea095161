// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <cmath>
#include <string>

#include "model/files/BallRecords.h"
#include "model/files/EventRecords.h"
#include "model/files/InstrumentFields.h"
#include "model/files/InstrumentFile.h"
#include "model/files/PatternRecords.h"
#include "model/files/PresetRecords.h"
#include "model/files/SlotRecords.h"

namespace quib {

namespace {

void WriteFields(CRecordWriter& writer, std::span<const InstrumentField> fields, CInstrument& instrument) {
    for (const InstrumentField& field : fields) {
        if (field.integer != nullptr) {
            writer.IntegerLine(field.key, field.integer(instrument).Get());
        } else {
            writer.RealLine(field.key, field.real(instrument).Get());
        }
    }
}

void WriteStrip(CRecordWriter& writer, EStripPart part, const ChannelStrip& strip) {
    for (const StripSetting& setting : kStripSettings) {
        if (setting.part == part) writer.RealLine(setting.keys.instrument, setting.member(strip).Get());
    }
}

void WriteKeyboard(CRecordWriter& writer, const CInstrument& instrument, std::span<const std::int32_t> heldKeys) {
    writer.IntegerLine("KEYBOARDON", static_cast<std::int32_t>(std::lround(instrument.keyboardOn.Get())));
    writer.IntegerLine("KEYBOARD_POSITION", instrument.keyboardPosition);
    WriteIntegers(writer, "KEYBOARD_KEYS", heldKeys);
}

void WritePlaylist(CRecordWriter& writer, const Playlist& playlist) {
    if (playlist.empty()) return;
    writer.Key("PLAYLIST");
    for (const PlaylistEntry& entry : playlist) {
        writer.Integer(entry.pattern).Integer(entry.start).Integer(entry.repeat);
    }
    writer.EndLine();
}

// The number stands inside some keys and at the end of others.
void WriteInsert(CRecordWriter& writer, CInstrument& instrument, std::size_t index) {
    const PluginSlot& slot = *instrument.inserts[index].ForEdit();
    if (IsEmpty(slot)) return;
    const std::string number = std::to_string(index + 1);
    WriteSlotName(writer, "INSERT" + number + "_PLUGIN", slot);
    WriteStrip(writer, index == 0 ? EStripPart::kInsert1 : EStripPart::kInsert2, instrument.strip);
    WriteState(writer, "INSERT_PRESET_" + number, slot);
    WriteEvents(writer, "INSERT_PARAM_EVENTS_" + number, slot);
}

// Only where the user has changed it, after what every reader knows.
void WriteLook(CRecordWriter& writer, const CInstrument& instrument) {
    if (instrument.stripColour != 0) writer.IntegerLine("STRIP_COLOUR", instrument.stripColour);
    if (instrument.stripCollapsed) writer.IntegerLine("STRIP_COLLAPSED", 1);
    if (instrument.isFrozen) writer.IntegerLine("FROZEN", 1);
    if (instrument.arpeggiator.latch.IsOn()) writer.IntegerLine("ARPEG_LATCH", 1);
}

}  // namespace

void WriteInstrument(CRecordWriter& writer, CInstrument& instrument, std::span<const std::int32_t> heldKeys,
                     bool withPresets) {
    const PluginSlot& slot = *instrument.plugin.ForEdit();
    WriteSlotName(writer, "PLUGIN", slot);
    writer.TextLine("TITLE", instrument.title);
    writer.IntegerLine("ICONE", instrument.icon);
    WriteFields(writer, MidiInputFields(), instrument);
    WriteKeyboard(writer, instrument, heldKeys);
    WriteFields(writer, StepFields(), instrument);
    WriteStrip(writer, EStripPart::kMixer, instrument.strip);
    WriteFields(writer, ArpeggiatorFields(), instrument);
    WriteStrip(writer, EStripPart::kEffects, instrument.strip);
    WriteIntegers(writer, "EVENT_PLUGIN_PARAM", instrument.eventPluginParameters);
    WriteBalls(writer, kInstrumentBallKeys, *instrument.ballSounds.ForEdit());
    if (withPresets) {
        for (const Preset& preset : instrument.presets) WritePreset(writer, preset);
    }
    WritePlaylist(writer, *instrument.playlist.ForEdit());
    WriteSongPoints(writer, "MIX_EVENTS", *instrument.mixLanes.ForEdit());
    writer.TextLine("PATTERNS", "START");
    WritePatternBlock(writer, instrument);
    writer.TextLine("PATTERNS", "END");
    if (!IsEmpty(slot)) {
        WriteEvents(writer, "PLUGIN_PARAM_EVENTS", slot);
        WriteState(writer, "PLUGIN_PRESET", slot);
    }
    for (std::size_t index = 0; index < instrument.inserts.size(); ++index) WriteInsert(writer, instrument, index);
    WriteLook(writer, instrument);
}

}  // namespace quib
