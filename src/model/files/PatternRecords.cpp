// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/PatternRecords.h"

#include <algorithm>
#include <utility>

#include "model/MixLanes.h"
#include "model/files/EventRecords.h"
#include "model/files/SlotRecords.h"

namespace quib {

namespace {

constexpr int kShortestLength = 48;
constexpr float kFarthest = kMaximumStepCount;
constexpr std::int32_t kHighestMidiValue = 127;

Note Limited(Note note) noexcept {
    note.position = std::clamp(note.position, -kFarthest, kFarthest);
    note.length = std::clamp(note.length, 0.0F, kFarthest);
    note.key = std::clamp(note.key, 0, kHighestMidiValue);
    note.velocity = std::clamp(note.velocity, 0, kHighestMidiValue);
    return note;
}

// One more than the longest of: 48 steps, the loops, the ends of the last notes.
std::int32_t BlockLength(const CInstrument& instrument) {
    int longest = kShortestLength;
    for (const auto& published : instrument.patterns) {
        const CPattern& pattern = *published.ForEdit();
        longest = std::max(longest, pattern.StepCount());
        if (pattern.Notes().empty()) continue;
        const Note& last = pattern.Notes().back();
        longest = std::max(longest, TruncateWithin(last.position + last.length, 0, 2 * kMaximumStepCount));
    }
    return longest + 1;
}

std::string DisplayName(const PluginSlot& slot) {
    if (slot.plugin) return slot.plugin->Identity().displayName;
    return slot.missing ? slot.missing->displayName : std::string();
}

void ReadMode(const CRecordReader& line, PatternBlock& block) {
    if (!line.HasFields(4)) return;
    block.mode = ToStepNumberMode(line.Integer(2));
    block.modeValue = ToStepNumberModeValue(line.Real(3));
}

void WriteBlockHead(CRecordWriter& writer, const CInstrument& instrument) {
    const auto mode = static_cast<std::int32_t>(SelectedStepNumberMode(instrument));
    writer.Key("STEPNUMBER_MODE").Integer(BlockLength(instrument)).Integer(mode).Real(instrument.swing.Get());
    writer.EndLine();
    const PluginSlot& slot = *instrument.plugin.ForEdit();
    if (!IsEmpty(slot)) writer.TextLine("PLUGIN_NAME", DisplayName(slot));
}

void WritePattern(CRecordWriter& writer, const CInstrument& instrument, int pattern, std::int32_t used) {
    WriteNotes(writer, "", pattern, *instrument.patterns[static_cast<std::size_t>(pattern)].ForEdit(), used);
    WritePatternPoints(writer, "PATTERN_MIDIPARAM_EVENTS", *instrument.midiLanes.ForEdit(), pattern);
    WritePatternPoints(writer, "PATTERN_PLUGINPARAM_EVENTS", SlotLanes(*instrument.plugin.ForEdit()), pattern);
    WritePatternPoints(writer, "PATTERN_MIXPARAM_EVENTS", *instrument.mixLanes.ForEdit(), pattern);
}

// The points of the patterns from `patterns`, those of the song from `song`.
std::shared_ptr<const CEventLanes> Joined(const CEventLanes& patterns, const CEventLanes& song) {
    return std::make_shared<const CEventLanes>(patterns.WithSlotOf(song, CEventLanes::kSongSlot));
}

}  // namespace

EStepNumberMode ToStepNumberMode(std::int32_t number) noexcept {
    return number >= 0 && number <= 3 ? static_cast<EStepNumberMode>(number) : EStepNumberMode::kLoop;
}

float ToStepNumberModeValue(float value) noexcept { return std::clamp(value, 0.0F, 1.0F); }

void CNoteReader::Read(const CRecordReader& line) {
    const std::int32_t index = line.Integer(1);
    if (!line.HasFields(4) || index < 0 || index >= kPatternCount) return;
    Pattern& pattern = patterns[static_cast<std::size_t>(index)];
    pattern.mentioned = true;
    pattern.steps = line.Integer(2);
    pattern.used = line.Integer(3);
    CRecordFields fields = line.FieldsFrom(4);
    if (pattern.notes.empty()) pattern.notes.reserve(fields.Count() / 4);
    Note note;
    while (fields.Next(note.position) && fields.Next(note.key) && fields.Next(note.length) &&
           fields.Next(note.velocity)) {
        pattern.notes.push_back(Limited(note));
    }
}

void CNoteReader::ReadSteps(const CRecordReader& line) {
    const std::int32_t index = line.Integer(1);
    if (!line.HasFields(3) || index < 0 || index >= kPatternCount) return;
    Pattern& pattern = patterns[static_cast<std::size_t>(index)];
    pattern.mentioned = true;
    pattern.steps = line.Integer(2);
}

std::shared_ptr<const CPattern> CNoteReader::Take(std::size_t pattern) {
    Pattern& content = patterns[pattern];
    if (!content.mentioned) return nullptr;
    return std::make_shared<const CPattern>(content.steps, std::move(content.notes));
}

void ReadPatternBlock(CRecordReader& reader, PatternBlock& block, PatternLaneBuilders lanes) {
    while (reader.NextLine()) {
        const std::string_view key = reader.Key();
        if (key == "PATTERNS" && !OpensBracket(reader)) return;
        if (key == "PLUGIN" && reader.HasFields(2)) return reader.RepeatLine();
        block.recognised = block.recognised || key.starts_with("PATTERN") || key == "STEPNUMBER_MODE";
        if (key == "STEPNUMBER_MODE") {
            ReadMode(reader, block);
        } else if (key == "PLUGIN_NAME") {
            block.pluginName = reader.Text(1);
        } else if (key == "PATTERN_NOTES") {
            block.notes.Read(reader);
        } else if (key == "PATTERN_STEPS") {
            block.notes.ReadSteps(reader);
        } else if (key == "PATTERN_MIDIPARAM_EVENTS") {
            ReadPatternPoints(reader, kMidiLaneCount, lanes.midi);
        } else if (key == "PATTERN_PLUGINPARAM_EVENTS") {
            ReadPatternPoints(reader, lanes.pluginLaneCount, lanes.plugin);
        } else if (key == "PATTERN_MIXPARAM_EVENTS") {
            ReadPatternPoints(reader, kMixLaneCount, lanes.mix);
        }
    }
}

// Without notes and mark only a length that is not the usual one is told, by a key that older readers pass over.
void WriteNotes(CRecordWriter& writer, std::string_view prefix, int pattern, const CPattern& content,
                std::int32_t used) {
    const std::string family(prefix);
    if (content.Notes().empty() && used < 1) {
        if (content.StepCount() == kDefaultStepCount) return;
        writer.Key(family + "PATTERN_STEPS").Integer(pattern).Integer(content.StepCount());
        return writer.EndLine();
    }
    writer.Key(family + "PATTERN_NOTES").Integer(pattern).Integer(content.StepCount()).Integer(used);
    for (const Note& note : content.Notes()) {
        writer.Real(note.position).Integer(note.key).Real(note.length).Integer(note.velocity);
    }
    writer.EndLine();
}

void WritePatternBlock(CRecordWriter& writer, const CInstrument& instrument) {
    WriteBlockHead(writer, instrument);
    for (int pattern = 0; pattern < kPatternCount; ++pattern) {
        WritePattern(writer, instrument, pattern, instrument.patternUsed[static_cast<std::size_t>(pattern)].Get());
    }
}

void WritePatternAlone(CRecordWriter& writer, const CInstrument& instrument, int pattern) {
    WriteBlockHead(writer, instrument);
    WritePattern(writer, instrument, pattern,
                 std::max(1, instrument.patternUsed[static_cast<std::size_t>(pattern)].Get()));
}

bool ReadPatternFile(std::string_view bytes, PatternSet& set, std::string& error) {
    CRecordReader reader(bytes);
    PatternBlock block;
    CEventLanesBuilder midi;
    CEventLanesBuilder mix;
    CEventLanesBuilder plugin;
    ReadPatternBlock(reader, block, {midi, mix, plugin, CPlugin::kMaximumParameters});
    if (!block.recognised) {
        error = "not a pattern file";
        return false;
    }
    for (std::size_t i = 0; i < set.patterns.size(); ++i) {
        set.patterns[i] = block.notes.Take(i);
        set.used[i] = block.notes.Used(i);
    }
    set.mode = block.mode;
    set.modeValue = block.modeValue;
    set.midiLanes = midi.Build();
    set.mixLanes = mix.Build();
    set.pluginLanes = plugin.Build();
    set.pluginName = block.pluginName;
    return true;
}

std::optional<PatternClip> ReadPatternClip(std::string_view text) {
    PatternClip clip;
    std::string error;
    if (!ReadPatternFile(text, clip.set, error)) return std::nullopt;
    const auto first = std::find_if(clip.set.patterns.begin(), clip.set.patterns.end(),
                                    [](const auto& pattern) { return pattern != nullptr; });
    if (first == clip.set.patterns.end()) return std::nullopt;
    clip.pattern = static_cast<int>(first - clip.set.patterns.begin());
    return clip;
}

void ReplacePatterns(CInstrument& instrument, const PatternSet& set, CGraveyard& graveyard) {
    const auto empty = std::make_shared<const CPattern>();
    for (std::size_t i = 0; i < set.patterns.size(); ++i) {
        instrument.patterns[i].Publish(set.patterns[i] ? set.patterns[i] : empty, graveyard);
        instrument.patternUsed[i].Set(set.used[i]);
    }
    if (set.mode) {
        SelectStepNumberMode(instrument, *set.mode);
        instrument.swing.Set(set.modeValue);
    }
    instrument.midiLanes.Publish(Joined(set.midiLanes, *instrument.midiLanes.ForEdit()), graveyard);
    instrument.mixLanes.Publish(Joined(set.mixLanes, *instrument.mixLanes.ForEdit()), graveyard);
    if (const auto& plugin = instrument.plugin.ForEdit()->plugin) {
        plugin->lanes.Publish(Joined(set.pluginLanes, *plugin->lanes.ForEdit()), graveyard);
    }
}

}  // namespace quib
