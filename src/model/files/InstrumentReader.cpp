// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "model/MidiEvents.h"
#include "model/MixLanes.h"
#include "model/files/BallRecords.h"
#include "model/files/EventRecords.h"
#include "model/files/InstrumentFields.h"
#include "model/files/InstrumentFile.h"
#include "model/files/PatternRecords.h"
#include "model/files/PresetRecords.h"
#include "model/files/SlotRecords.h"

namespace quib {

namespace {

constexpr std::int32_t kLargestIcon = 1 << 16;
constexpr std::int32_t kLargestColour = 0x1000000;

// Gathers what the lines say about one instrument and puts it into the instrument at the end.
class CInstrumentReader {
public:
    CInstrumentReader(CRecordReader& recordReader, LoadContext& loadContext)
        : reader(recordReader), context(loadContext) {}

    std::shared_ptr<CInstrument> Read(bool& ended);

private:
    using Handler = void (CInstrumentReader::*)();
    struct Record {
        std::string_view key;
        std::size_t fields;  // the fewest that a line needs, the key included
        Handler handler;
    };
    static const std::array<Record, 20> kRecords;

    bool ReadRecord();
    bool ReadField(std::span<const InstrumentField> fields);
    bool ReadStripSetting();
    bool ReadPresetRecord();

    void ReadTitle() { instrument->title = reader.Text(1); }
    void ReadIcon() { instrument->icon = std::clamp(reader.Integer(1), 0, kLargestIcon); }
    void ReadStripColour() { instrument->stripColour = std::clamp(reader.Integer(1), 0, kLargestColour); }
    void ReadLatch() { instrument->arpeggiator.latch.Set(reader.Integer(1) != 0 ? 1.0F : 0.0F); }
    void ReadFrozen() { instrument->isFrozen = reader.Integer(1) != 0; }
    void ReadStripCollapsed() { instrument->stripCollapsed = reader.Integer(1) != 0; }
    void ReadKeyboardOn() { instrument->keyboardOn.Set(reader.Integer(1) != 0 ? 1.0F : 0.0F); }
    void ReadKeyboardPosition() { instrument->keyboardPosition = std::clamp(reader.Integer(1), 0, kHighestKey); }
    void ReadKeyboardKeys();
    void ReadEventPluginParameters() {
        instrument->eventPluginParameters = ReadIntegers(reader, 0, CPlugin::kMaximumParameters - 1);
    }
    void AddPreset();
    void ReadPlaylist();
    void ReadMixEvents() { ReadSongPoints(reader, kMixLaneCount, mixLanes); }
    void ReadPatterns();
    void ReadPluginEvents() { ReadEventsOf(plugin); }
    void ReadPluginState() { ReadStateOf(plugin); }
    void ReadInsertEvents() { ReadEventsOf(InsertOfLastDigit()); }
    void ReadInsertState() { ReadStateOf(InsertOfLastDigit()); }
    void ReadInsertPlugin() {
        inserts[reader.Key() == "INSERT2_PLUGIN" ? 1 : 0].Load(reader, ESlotKind::kEffect, context);
    }

    CSlotReader& InsertOfLastDigit() { return inserts[reader.Key().back() == '2' ? 1 : 0]; }
    void ReadEventsOf(CSlotReader& slot) {
        if (OpensBracket(reader)) slot.ReadEvents(reader, context);
    }
    void ReadStateOf(CSlotReader& slot) {
        if (OpensBracket(reader)) slot.ReadState(reader, context);
    }
    void Finish();

    CRecordReader& reader;
    LoadContext& context;
    std::shared_ptr<CInstrument> instrument = std::make_shared<CInstrument>();
    bool recognised = false;
    CSlotReader plugin;
    std::array<CSlotReader, kInsertCount> inserts;
    PatternBlock patterns;
    CEventLanesBuilder midiLanes;
    CEventLanesBuilder mixLanes;
    BallSoundList balls;
    std::vector<CPresetReader> lastPreset;  // none or one: the preset that lines belong to
    bool presetsFull = false;
};

const std::array<CInstrumentReader::Record, 20> CInstrumentReader::kRecords = {{
    {"TITLE", 2, &CInstrumentReader::ReadTitle},
    {"ICONE", 2, &CInstrumentReader::ReadIcon},
    {"STRIP_COLOUR", 2, &CInstrumentReader::ReadStripColour},
    {"STRIP_COLLAPSED", 2, &CInstrumentReader::ReadStripCollapsed},
    {"FROZEN", 2, &CInstrumentReader::ReadFrozen},
    {"ARPEG_LATCH", 2, &CInstrumentReader::ReadLatch},
    {"KEYBOARDON", 2, &CInstrumentReader::ReadKeyboardOn},
    {"KEYBOARD_POSITION", 2, &CInstrumentReader::ReadKeyboardPosition},
    {"KEYBOARD_KEYS", 2, &CInstrumentReader::ReadKeyboardKeys},
    {"INSERT1_PLUGIN", 2, &CInstrumentReader::ReadInsertPlugin},
    {"INSERT2_PLUGIN", 2, &CInstrumentReader::ReadInsertPlugin},
    {"EVENT_PLUGIN_PARAM", 2, &CInstrumentReader::ReadEventPluginParameters},
    {"PLAYLIST", 2, &CInstrumentReader::ReadPlaylist},
    {"MIX_EVENTS", 2, &CInstrumentReader::ReadMixEvents},
    {"PATTERNS", 2, &CInstrumentReader::ReadPatterns},
    {"PLUGIN_PARAM_EVENTS", 2, &CInstrumentReader::ReadPluginEvents},
    {"PLUGIN_PRESET", 2, &CInstrumentReader::ReadPluginState},
    {"PRESET_ADD", 1, &CInstrumentReader::AddPreset},
    {"INSERT_PARAM_EVENTS_", 2, &CInstrumentReader::ReadInsertEvents},
    {"INSERT_PRESET_", 2, &CInstrumentReader::ReadInsertState},
}};

bool CInstrumentReader::ReadField(std::span<const InstrumentField> fields) {
    const std::string_view key = reader.Key();
    for (const InstrumentField& field : fields) {
        if (key != field.key) continue;
        if (!reader.HasFields(2)) return true;
        if (field.integer != nullptr) {
            field.integer(*instrument)
                .Set(std::clamp(reader.Integer(1), static_cast<std::int32_t>(field.low),
                                static_cast<std::int32_t>(field.high)));
        } else {
            field.real(*instrument).Set(std::clamp(reader.Real(1), field.low, field.high));
        }
        return true;
    }
    return false;
}

bool CInstrumentReader::ReadStripSetting() {
    for (const StripSetting& setting : kStripSettings) {
        if (reader.Key() != setting.keys.instrument) continue;
        if (reader.HasFields(2)) setting.member(instrument->strip).Set(setting.Limited(reader.Real(1)));
        return true;
    }
    return false;
}

bool CInstrumentReader::ReadPresetRecord() {
    if (!reader.Key().starts_with("PRESET_") || reader.Key() == "PRESET_ADD") return false;
    if (ReadBallRecord(reader, kInstrumentBallKeys, balls)) return true;
    // Lines of a preset that is left out are still read, for the bytes that belong to them.
    if (lastPreset.empty()) {
        lastPreset.emplace_back();
        presetsFull = true;
    }
    return lastPreset.back().ReadLine(reader);
}

bool CInstrumentReader::ReadRecord() {
    if (ReadPresetRecord() || ReadField(MidiInputFields()) || ReadField(StepFields()) || ReadStripSetting() ||
        ReadField(ArpeggiatorFields())) {
        return true;
    }
    const std::string_view key = reader.Key();
    for (const Record& record : kRecords) {
        const bool numbered = record.key.back() == '_';
        const bool matches = numbered ? key.size() == record.key.size() + 1 && key.starts_with(record.key) &&
                                            (key.back() == '1' || key.back() == '2')
                                      : key == record.key;
        if (!matches) continue;
        if (reader.HasFields(record.fields)) (this->*record.handler)();
        return true;
    }
    return false;
}

void CInstrumentReader::ReadKeyboardKeys() {
    auto& held = instrument->play.heldKeys;
    held.Items().clear();
    for (const std::int32_t key : ReadIntegers(reader, 0, kHighestKey)) held.Add(key);
}

void CInstrumentReader::AddPreset() {
    if (!lastPreset.empty() && !presetsFull) instrument->presets.push_back(lastPreset.back().Finish());
    lastPreset.clear();
    lastPreset.emplace_back();
    presetsFull = instrument->presets.size() >= kMaximumPresets;
}

void CInstrumentReader::ReadPlaylist() {
    Playlist playlist;
    CRecordFields fields = reader.FieldsFrom(1);
    playlist.reserve(fields.Count() / 3);
    PlaylistEntry entry;
    while (fields.Next(entry.pattern) && fields.Next(entry.start) && fields.Next(entry.repeat)) {
        if (entry.pattern < 0 || entry.pattern >= kPatternCount) continue;
        entry.start = std::clamp(entry.start, 0, kMaximumSongStep);
        playlist.push_back(entry);
    }
    instrument->playlist.Prepare(std::make_shared<const Playlist>(std::move(playlist)));
}

void CInstrumentReader::ReadPatterns() {
    if (!OpensBracket(reader)) return;
    ReadPatternBlock(reader, patterns, {midiLanes, mixLanes, plugin.Lanes(), plugin.LaneCount()});
    plugin.SetDisplayName(patterns.pluginName);
}

void CInstrumentReader::Finish() {
    if (!lastPreset.empty() && !presetsFull) instrument->presets.push_back(lastPreset.back().Finish());
    for (std::size_t i = 0; i < instrument->patterns.size(); ++i) {
        if (auto pattern = patterns.notes.Take(i)) instrument->patterns[i].Prepare(std::move(pattern));
        instrument->patternUsed[i].Set(patterns.notes.Used(i));
    }
    if (patterns.mode) {
        SelectStepNumberMode(*instrument, *patterns.mode);
        instrument->swing.Set(patterns.modeValue);
    }
    instrument->midiLanes.Prepare(std::make_shared<const CEventLanes>(midiLanes.Build()));
    instrument->mixLanes.Prepare(std::make_shared<const CEventLanes>(mixLanes.Build()));
    instrument->ballSounds.Prepare(std::make_shared<const BallSoundList>(std::move(balls)));
    const std::string place = instrument->title.empty() ? "an instrument" : instrument->title;
    instrument->plugin.Prepare(plugin.Finish(context, place));
    for (std::size_t i = 0; i < inserts.size(); ++i) {
        instrument->inserts[i].Prepare(inserts[i].Finish(context, place));
    }
}

std::shared_ptr<CInstrument> CInstrumentReader::Read(bool& ended) {
    bool named = false;
    ended = false;
    while (!ended && reader.NextLine()) {
        if (reader.Key() != "PLUGIN" || !reader.HasFields(2)) {
            if (ReadRecord()) recognised = true;
        } else if (ClosesBracket(reader)) {
            ended = true;
        } else if (named) {
            reader.RepeatLine();  // the next instrument: the end of this one got lost
            break;
        } else {
            named = true;
            plugin.Load(reader, ESlotKind::kInstrument, context);
        }
    }
    if (!recognised && !named) return nullptr;
    Finish();
    return std::move(instrument);
}

}  // namespace

std::shared_ptr<CInstrument> ReadInstrument(CRecordReader& reader, LoadContext& context, bool& ended) {
    return CInstrumentReader(reader, context).Read(ended);
}

std::shared_ptr<CInstrument> ReadInstrumentFile(std::string_view bytes, LoadContext& context, std::string& error) {
    CRecordReader reader(bytes);
    bool ended = false;
    auto instrument = ReadInstrument(reader, context, ended);
    if (!instrument) error = "not an instrument file";
    if (instrument && reader.IsCutOff()) context.Warn(instrument->title, "the file ends inside a line");
    return instrument;
}

}  // namespace quib
