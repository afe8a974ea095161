// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ProjectFile.h"

#include <clocale>

#include "CTemporaryFolder.h"
#include "Testing.h"
#include "fuzz/FuzzTargets.h"
#include "model/StripSettings.h"
#include "model/files/CRecordReader.h"
#include "model/plugin/CPluginFinder.h"
#include "platform/CFileBytes.h"
#include "project/GeneratedProject.h"

namespace quib {
namespace {

namespace fs = std::filesystem;
using generated::BytesOf;
using generated::TestPluginLoader;

ProjectState Read(const std::string& bytes, const PluginLoader& load = TestPluginLoader()) {
    ProjectState state;
    std::string error;
    EXPECT_TRUE(ReadProject(bytes, load, state, error)) << error;
    return state;
}

// Thorough runs take minutes; the ordinary ones take a part of the same cases.
bool IsThorough() { return std::getenv("QUIB_THOROUGH") != nullptr; }

TEST(ProjectFile, LoadAndSaveTwiceGivesTheSameBytes) {
    const std::string first = BytesOf(generated::EveryRecord());
    const ProjectState state = Read(first);
    EXPECT_TRUE(state.warnings.empty() || state.warnings.size() == 1) << state.warnings[1];  // the missing insert
    const std::string second = BytesOf(state);
    EXPECT_EQ(second, BytesOf(Read(second)));
    EXPECT_EQ(first, second);  // the generated one holds nothing that the format cuts
    // Without a single plug-in everything stays all the same.
    EXPECT_EQ(second, BytesOf(Read(second, {})));
}

std::set<std::string, std::less<>> KeysOf(std::string_view bytes) {
    std::set<std::string, std::less<>> found;
    CRecordReader reader(bytes);
    while (reader.NextLine()) found.emplace(reader.Key());
    return found;
}

TEST(ProjectFile, TheGeneratedProjectHoldsEveryKey) {
    const auto found = KeysOf(BytesOf(generated::EveryRecord()));
    std::istringstream keys(
        "VERSION TEMPO MASTER_LEVEL PLAYLIST_STEP_NUMBER SONG_MODE SYNCHRO_ON LOOP_ON LOOP_START LOOP_END "
        "CROSSFADE PRESET_SELECTED PRESET_MIDI DETECTOR_EQFREQ DETECTOR_GAIN MASTER_INSERT1_PLUGIN "
        "MASTER_INSERT2_ON MASTER_INSERT_PRESET_1 MASTER_INSERT_PARAM_EVENTS_2 MASTER_MIX_EVENTS PLUGIN "
        "TITLE ICONE MIDIKEYTRANSPOSE KEYBOARDON KEYBOARD_KEYS STEPNUMBER SYNCHRO_INST ARPEG_TEMPO "
        "PATTERNSELECTED EFFECT4_LEVEL EQ3_GAIN EVENT_PLUGIN_PARAM PRESET_SOUND_BALL PRESET_SOUND_MIDI "
        "PRESET_SOUND_PARAM_HORZ PRESET_SOUND_PARAM_VERT PRESET_ADD PRESET_STEPNUMBER_MODE "
        "PRESET_PATTERN_NOTES PRESET_LEVEL PRESET_CROSSFADEA PRESET_SYNCHRO PRESET_PATTERNSELECTED "
        "PRESET_INSERT2_ON PRESET_EFFECT1_ON PRESET_EQ_ON PRESET_BALL PRESET_BALL_MIDI PRESET_PARAM_HORZ "
        "PRESET_PARAM_VERT PRESET_EVENT_PLUGIN_PARAM PRESET_PATTERN_MIDIPARAM_EVENTS "
        "PRESET_PATTERN_MIXPARAM_EVENTS PRESET_PATTERN_PLUGINPARAM_EVENTS PRESET_KEYBOARDON "
        "PRESET_KEYBOARD_KEYS PRESET_PLUGIN_PARAMS PRESET_INSERT1_PARAMS PRESET_INSERT2_PARAMS PLAYLIST "
        "MIX_EVENTS PATTERNS STEPNUMBER_MODE PLUGIN_NAME PATTERN_NOTES PATTERN_MIDIPARAM_EVENTS "
        "PATTERN_PLUGINPARAM_EVENTS PATTERN_MIXPARAM_EVENTS PLUGIN_PARAM_EVENTS PARAM_EVENTS PLUGIN_PRESET "
        "PRESET_SIZE PRESET_INDEX PRESET INSERT1_PLUGIN INSERT1_ON INSERT_PRESET_1 INSERT_PARAM_EVENTS_1 "
        "INSERT2_PLUGIN INSERT2_ON INSERT_PRESET_2 INSERT_PARAM_EVENTS_2 EFFECT_1 EFFECT_PRESET_4 "
        "EFFECT_PARAM_EVENTS_3 TIME_SIGNATURE SONG_MARKER MIDI_BINDING PATTERN_STEPS PRESET_PATTERN_STEPS "
        "STRIP_COLOUR STRIP_COLLAPSED ARPEG_LATCH FROZEN PLUGIN_ID INSERT1_PLUGIN_ID MASTER_INSERT1_PLUGIN_ID "
        "EFFECT_1_ID");
    for (std::string key; keys >> key;) EXPECT_TRUE(found.contains(key)) << key;
}

// What stands in quotes in the first column of the tables of records.
std::set<std::string, std::less<>> RecordsOfManual(const char* language) {
    std::ifstream file(std::string(QUIB_SOURCE_DIR "/docs/manual/") + language + ".md");
    constexpr const char* kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
    std::set<std::string, std::less<>> named;
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with("| `")) continue;
        const std::string column = line.substr(0, line.find('|', 1));
        for (auto begin = column.find('`'); begin != std::string::npos; begin = column.find('`', begin)) {
            const auto end = column.find('`', ++begin);
            const std::string word = column.substr(begin, end - begin);
            if (word.size() > 1 && word.find_first_not_of(kLetters) == std::string::npos) named.insert(word);
            begin = end == std::string::npos ? end : end + 1;
        }
    }
    return named;
}

TEST(ProjectFile, TheManualsListEveryRecordAndNoOther) {
    auto known = KeysOf(BytesOf(generated::EveryRecord()));
    for (const StripSetting& setting : kStripSettings) known.emplace(setting.keys.otherPreset);
    known.erase("");
    for (const char* const part : {"MIX", "INSERT1", "INSERT2"}) {
        for (const char* const axis : {"HORZ", "VERT"})
            known.insert(std::string("PRESET_SOUND_") + part + "_PARAM_" + axis);  // only read
    }
    for (const char* const language : {"english", "french"}) EXPECT_EQ(RecordsOfManual(language), known) << language;
}

TEST(ProjectFile, AnEmptyProjectIsTheNineteenRecordsOfItsHead) {
    EXPECT_EQ(BytesOf(ProjectState()),
              "VERSION;1.5;\r\nTEMPO;120.000000;\r\nMASTER_LEVEL;127.000000;\r\nPLAYLIST_STEP_NUMBER;0;\r\n"
              "SONG_MODE;1.000000;\r\nSYNCHRO_ON;0.000000;\r\nLOOP_ON;0.000000;\r\nLOOP_START;0;\r\nLOOP_END;0;\r\n"
              "CROSSFADE;0.000000;\r\nPRESET_SELECTED;0.000000;\r\nPRESET_MIDI;0;0;0;\r\n"
              "DETECTOR_EQFREQ;0.000000;\r\nDETECTOR_EQRES;0.000000;\r\nDETECTOR_ATTACK;0.000000;\r\n"
              "DETECTOR_RELEASE;0.000000;\r\nDETECTOR_THRESHOLD;0.000000;\r\nDETECTOR_LEVEL;0.000000;\r\n"
              "DETECTOR_GAIN;0.000000;\r\n");
}

TEST(ProjectFile, OnlyTheFourEffectSlotsAndKnownKeysCount) {
    const ProjectState state = Read(
        "VERSION;9.9;\r\nTEMPO;1000;\r\nTEMPO\r\nEFFECT_3;Gain.dll;\r\nEFFECT_5;Gain.dll;\r\n"
        "EFFECT_PARAM_EVENTS_3;START;\r\nPARAM_EVENTS;0;1;0.5;\r\nPARAM_EVENTS;1;1;0.5;\r\nPARAM_EVENTS;END;\r\n"
        "PLUGIN;END;\r\nPLUGIN;ChunkSynth;\r\nPLUGIN_PRESET;START;\r\nPRESET_INDEX;5;\r\nPRESET;END;\r\n"
        "PLUGIN;END;\r\nMASTER_MIX_EVENTS;5;0;1;\r\nMASTER_MIX_EVENTS;4;0;90;\r\n");
    EXPECT_EQ(state.master.tempo, 300.0F);
    EXPECT_TRUE(state.effects[2]->plugin);
    for (const int empty : {0, 1, 3}) EXPECT_FALSE(state.effects[static_cast<std::size_t>(empty)]->plugin);
    const auto lanes = state.effects[2]->plugin->lanes.ForEdit()->Lanes(CEventLanes::kSongSlot);
    EXPECT_EQ(lanes.size(), 1U) << "the plug-in has one parameter";
    ASSERT_EQ(state.instruments.size(), 1U);
    // A state block without an image selects a program.
    EXPECT_EQ(state.instruments[0]->plugin.ForEdit()->plugin->CurrentProgram(), 5);
    EXPECT_EQ(state.masterLanes.Lanes(CEventLanes::kSongSlot).size(), 1U);
    EXPECT_TRUE(state.warnings.empty());
}

TEST(ProjectFile, PluginsOfTheWrongKindAndForeignStatesBecomeWarnings) {
    const ProjectState state = Read(
        "EFFECT_1;ChunkSynth.dll;\r\nPLUGIN;Gain.dll;\r\nLEVEL;7;\r\nPLUGIN;END;\r\nEFFECT_2;Gain.dll;\r\n"
        "EFFECT_PRESET_2;START;\r\nPRESET_SIZE;4;\r\nabcd\r\nPRESET_INDEX;9;\r\nPRESET;END;\r\n");
    EXPECT_FALSE(state.effects[0]->plugin);
    EXPECT_EQ(state.effects[0]->missing->fileName, "ChunkSynth.dll");
    EXPECT_EQ(state.instruments.at(0)->strip.level.Get(), 7.0F);
    EXPECT_EQ(state.warnings,
              (std::vector<std::string>{
                  "Gain.dll: This plugin is not a synth category !; its settings are kept (an instrument)",
                  "Gain.dll: there is no program 9", "Gain.dll: No Compatible File !",
                  "ChunkSynth.dll: This plugin is not a compatible category !; its settings are kept "
                  "(send 1)"}));
}

TEST(ProjectFile, AMissingPluginIsToldOnceWithAllThatWantIt) {
    std::string text = "TEMPO;none;\r\nEFFECT_2;Gone.dll;\r\n";
    for (const char* const title : {"Lead", "Bass"}) {
        text += std::string("PLUGIN;Gone.dll;\r\nTITLE;") + title + ";\r\nPLUGIN;END;\r\n";
    }
    const ProjectState state = Read(text);
    ASSERT_EQ(state.warnings.size(), 1U);
    EXPECT_TRUE(state.warnings[0].ends_with("(Lead, Bass, send 2)")) << state.warnings[0];
    EXPECT_EQ(state.master.tempo, 120) << "what is no number is no tempo";
    // Names in lists have no extension, and line ends may be carriage returns alone.
    const std::string written = BytesOf(state);
    EXPECT_NE(written.find("EFFECT_2;Gone;\r\n"), std::string::npos);
    std::string old = written;
    std::erase(old, '\n');
    EXPECT_EQ(BytesOf(Read(old)), written);
}

TEST(ProjectFile, AnIdentityStandsBesideEachNameAndIsAskedForAndKept) {
    std::vector<std::string> asked;
    const PluginLoader load = [&](const PluginReference& wanted, ESlotKind kind, std::string& error) {
        asked.push_back(wanted.fileName + ' ' + wanted.identity);
        const bool isHere = wanted.identity == "vst2:74735042";
        return isHere ? TestPluginLoader()({"ParameterBank", {}}, kind, error) : nullptr;
    };
    const ProjectState state = Read(
        "MASTER_INSERT1_PLUGIN;Renamed.so;\r\nMASTER_INSERT1_PLUGIN_ID;vst2:74735042;\r\nEFFECT_1;Gone.dll;\r\n"
        "EFFECT_1_ID;other:x.y;\r\nEFFECT_2;Old.dll;\r\nPLUGIN;Lost.so;\r\nPLUGIN_ID;vst2:00000001;\r\nLEVEL;7;\r\n"
        "INSERT2_PLUGIN;Renamed.so;\r\nINSERT2_PLUGIN_ID;vst2:74735042;\r\nINSERT2_ON;1;\r\nPLUGIN;END;\r\n"
        "PLUGIN;Old.so;\r\nLEVEL;5;\r\nPLUGIN;END;\r\n",
        load);
    EXPECT_EQ(asked, (std::vector<std::string>{"Renamed.so vst2:74735042", "Gone.dll other:x.y", "Old.dll ",
                                               "Lost.so vst2:00000001", "Renamed.so vst2:74735042", "Old.so "}));
    EXPECT_EQ(state.instruments.at(0)->strip.level.Get(), 7.0F);
    EXPECT_EQ(state.instruments.at(1)->strip.level.Get(), 5.0F) << "the line after a name without identity counts";
    const std::string bytes = generated::BytesOf(state);
    for (const char* const lines :
         {"MASTER_INSERT1_PLUGIN;ParameterBank;\r\nMASTER_INSERT1_PLUGIN_ID;vst2:74735042;\r\n",
          "EFFECT_1;Gone;\r\nEFFECT_1_ID;other:x.y;\r\n", "EFFECT_2;Old;\r\nEFFECT_PRESET_2;",
          "PLUGIN;Lost.so;\r\nPLUGIN_ID;vst2:00000001;\r\nTITLE;", "PLUGIN;Old.so;\r\nTITLE;",
          "INSERT2_PLUGIN;ParameterBank.so;\r\nINSERT2_PLUGIN_ID;vst2:74735042;\r\nINSERT2_ON;"}) {
        EXPECT_NE(bytes.find(lines), std::string::npos) << lines;
    }
}

TEST(ProjectFile, TheEditsOfAProgramOutliveItsSelection) {
    const ProjectState state = Read("PLUGIN;PatchSynth;\r\nPLUGIN_PRESET;START;\r\nPRESET_INDEX;3;\r\nPRESET;END;\r\n");
    CPlugin& plugin = *state.instruments.at(0)->plugin.ForEdit()->plugin;
    plugin.SetParameter(2, 0.875F);
    const ProjectState again = Read(BytesOf(state));
    CPlugin& loaded = *again.instruments.at(0)->plugin.ForEdit()->plugin;
    EXPECT_EQ(loaded.CurrentProgram(), 3);
    EXPECT_EQ(loaded.Parameter(2), 0.875F);
    EXPECT_FLOAT_EQ(loaded.Parameter(1), 0.3F);
}

// Whatever happens to the file: no crash, and either a state that saves again or the state as before.
void ExpectWholeOrNothing(std::string_view bytes, const PluginLoader& load, bool mustWarn) {
    ProjectState state;
    state.master.tempo = 77;
    std::string error;
    if (ReadProject(bytes, load, state, error)) {
        EXPECT_FALSE(mustWarn && state.warnings.empty()) << bytes.size();
        EXPECT_FALSE(BytesOf(state).empty());
    } else {
        EXPECT_FALSE(error.empty());
        EXPECT_EQ(state.master.tempo, 77);
        EXPECT_TRUE(state.instruments.empty());
    }
}

// About 50 kB: the project of every record four times.
std::string DamageableProject() {
    ProjectState state = generated::EveryRecord();
    for (int i = 0; i < 3; ++i) {
        const ProjectState more = generated::EveryRecord();
        state.instruments.insert(state.instruments.end(), more.instruments.begin(), more.instruments.end());
    }
    return BytesOf(state);
}

TEST(ProjectFile, EveryTruncationLoadsWholeOrNotAtAll) {
    const std::string bytes = DamageableProject();
    ASSERT_GT(bytes.size(), 40000U);
    const std::size_t stride = IsThorough() ? 1 : 31;
    const std::size_t sections = bytes.find("PLUGIN;");
    for (std::size_t length = 0; length < bytes.size(); length += stride) {
        // A cut between two whole sections cannot be told from a shorter project.
        const std::string_view cut = std::string_view(bytes).substr(0, length);
        const bool inside = length > sections && !cut.ends_with("END;\r\n");
        ExpectWholeOrNothing(cut, {}, inside);
        if (length % 97 == 0) ExpectWholeOrNothing(cut, TestPluginLoader(), inside);
    }
}

TEST(ProjectFile, EveryFlippedBitLoadsWholeOrNotAtAll) {
    std::string bytes = DamageableProject();
    const std::size_t stride = IsThorough() ? 1 : 211;
    for (std::size_t bit = 0; bit < bytes.size() * 8; bit += stride) {
        const char mask = static_cast<char>(1 << (bit % 8));
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ mask);
        ExpectWholeOrNothing(bytes, {}, false);
        if (bit % 17 == 0) ExpectWholeOrNothing(bytes, TestPluginLoader(), false);
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ mask);
    }
}

// Compiled here: machines seldom have any but their own. Turkish has a decimal comma and other capitals of i.
TEST(ProjectFile, FilesDoNotDependOnTheLocale) {
    const std::string bytes = BytesOf(generated::EveryRecord());
    const CTemporaryFolder folder;
    ::setenv("LOCPATH", folder.Path().c_str(), 1);
    const std::string target = (folder.Path() / "tr_TR.UTF-8").string();
    ASSERT_EQ(std::system(("localedef -i tr_TR -f UTF-8 " + target).c_str()), 0);
    ASSERT_NE(std::setlocale(LC_ALL, "tr_TR.UTF-8"), nullptr);
    ASSERT_EQ(std::localeconv()->decimal_point, std::string(","));
    EXPECT_EQ(BytesOf(Read(bytes)), bytes);
    std::setlocale(LC_ALL, "C");
    ::unsetenv("LOCPATH");
}

TEST(ProjectFile, FilesThatCannotBeReadOrWrittenAreNamed) {
    const CTemporaryFolder temporary;
    const fs::path& folder = temporary.Path();
    const fs::path path = folder / "song.prg";
    ProjectState state;
    std::string error;
    EXPECT_FALSE(ReadProjectFile(path, {}, state, error));
    EXPECT_EQ(error, path.string() + ": No such file or directory");
    EXPECT_FALSE(ReadProjectFile(folder, {}, state, error));
    std::ofstream(path) << "RIFF....WAVEfmt \n";
    EXPECT_FALSE(ReadProjectFile(path, {}, state, error));
    EXPECT_EQ(error, path.string() + ": not a project file");
    state.master.tempo = 99;
    EXPECT_TRUE(WriteProjectFile(path, state, error)) << error;
    ProjectState read;
    EXPECT_TRUE(ReadProjectFile(path, {}, read, error)) << error;
    EXPECT_EQ(read.master, state.master);
    EXPECT_FALSE(WriteProjectFile(folder / "none" / "song.prg", state, error));
    EXPECT_EQ(error.find((folder / "none" / "song.prg").string()), 0U);
}

TEST(ProjectFile, ReadingTellsHowFarItIsAndCanBeStopped) {
    const std::string bytes = BytesOf(generated::EveryRecord());
    std::vector<float> shares;
    ProjectState state;
    std::string error;
    const auto count = [&shares](float share, const std::string&) {
        shares.push_back(share);
        return shares.size() < 4;
    };
    EXPECT_FALSE(ReadProject(bytes, TestPluginLoader(), state, error, count));
    EXPECT_EQ(error, "stopped");
    EXPECT_TRUE(state.instruments.empty());
    EXPECT_EQ(shares.size(), 4U);
    EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
}

TEST(ProjectFile, KeptInputsOfTheFuzzersStillPass) {
    std::size_t replayed = 0;
    for (const fuzz::Target& target : fuzz::kTargets) {
        for (const auto& file : fs::directory_iterator(fs::path(QUIB_SOURCE_DIR "/fuzz/seeds") / target.name)) {
            CFileBytes bytes;
            std::string error;
            ASSERT_TRUE(bytes.Read(file.path(), error)) << error;
            target.run(bytes.View());  // ends the process when a promise is broken
            ++replayed;
        }
    }
    EXPECT_GT(replayed, 100U);
}

}  // namespace
}  // namespace quib
