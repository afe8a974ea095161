// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The pattern block: the notes and the pattern-bound automation of an instrument's sixteen patterns,
// alone in a pattern file (.ptn) or inside an instrument. Editing thread.

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/CInstrument.h"
#include "model/files/CRecordReader.h"
#include "model/files/CRecordWriter.h"

namespace quib {

// The patterns that a file mentions, from list lines "KEY;pattern;steps;used;notes...".
class CNoteReader {
public:
    // Adds the notes of a line to its pattern; skips a line without a pattern 0..15.
    void Read(const CRecordReader& line);
    // The same for a line that tells the number of steps of a pattern without notes.
    void ReadSteps(const CRecordReader& line);
    // Null for a pattern that was not mentioned. To be called once for each pattern.
    std::shared_ptr<const CPattern> Take(std::size_t pattern);
    std::int32_t Used(std::size_t pattern) const noexcept { return patterns[pattern].used; }

private:
    struct Pattern {
        bool mentioned = false;
        std::int32_t steps = 0;
        std::int32_t used = 0;
        std::vector<Note> notes;
    };
    std::array<Pattern, kPatternCount> patterns;
};

// Where the points of a pattern block go.
struct PatternLaneBuilders {
    CEventLanesBuilder& midi;
    CEventLanesBuilder& mix;
    CEventLanesBuilder& plugin;
    int pluginLaneCount;
};

// What a pattern block says beside its points.
struct PatternBlock {
    CNoteReader notes;
    std::optional<EStepNumberMode> mode;
    float modeValue = 0;
    std::string pluginName;
    bool recognised = false;  // at least one record was known
};

// Reads up to the closing bracket or the end of the bytes.
void ReadPatternBlock(CRecordReader& reader, PatternBlock& block, PatternLaneBuilders lanes);
void WritePatternBlock(CRecordWriter& writer, const CInstrument& instrument);
// The block with one pattern alone, written even when it is empty.
void WritePatternAlone(CRecordWriter& writer, const CInstrument& instrument, int pattern);

// One line of notes if the pattern has notes or is marked as used, of steps if it only has an unusual length.
// `prefix` stands before its key.
void WriteNotes(CRecordWriter& writer, std::string_view prefix, int pattern, const CPattern& content,
                std::int32_t used);

// The step-number mode and value of a record; limited to what exists.
EStepNumberMode ToStepNumberMode(std::int32_t number) noexcept;
float ToStepNumberModeValue(float value) noexcept;

// The content of a pattern file, ready to replace an instrument's patterns.
struct PatternSet {
    std::array<std::shared_ptr<const CPattern>, kPatternCount> patterns;  // null: not mentioned
    std::array<std::int32_t, kPatternCount> used{};
    std::optional<EStepNumberMode> mode;
    float modeValue = 0;
    CEventLanes midiLanes;
    CEventLanes mixLanes;
    CEventLanes pluginLanes;
    std::string pluginName;  // whose parameters the plug-in's points mean
};

// One pattern of a pattern file.
struct PatternClip {
    PatternSet set;
    int pattern = 0;  // which one of the set
    // A whole pattern with its automation, not only notes of one.
    bool IsWhole() const noexcept { return set.mode.has_value(); }
    const CPattern& Notes() const noexcept { return *set.patterns[static_cast<std::size_t>(pattern)]; }
};

// False when the bytes hold no record of a pattern file; `set` is as before then.
bool ReadPatternFile(std::string_view bytes, PatternSet& set, std::string& error);
// The first pattern of a pattern file's text; nothing when there is none.
std::optional<PatternClip> ReadPatternClip(std::string_view text);

// Replaces all sixteen patterns and their points in an instrument that may be playing; patterns that
// the set does not mention become empty. Points of the song stay.
void ReplacePatterns(CInstrument& instrument, const PatternSet& set, CGraveyard& graveyard);

}  // namespace quib
