// SPDX-License-Identifier: GPL-3.0-or-later

#include "Testing.h"
#include "model/plugin/CPluginFinder.h"
#include "project/GeneratedProject.h"
#include "project/ProjectFile.h"

namespace quib {
namespace {

std::string FileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// What a command prints, or nothing when it fails.
std::string OutputOf(const std::string& command) {
    std::FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return {};
    std::string output;
    std::array<char, 4096> buffer{};
    for (std::size_t count = 0; (count = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
        output.append(buffer.data(), count);
    }
    return pclose(pipe) == 0 ? output : std::string();
}

std::set<std::string> LinesOf(const std::string& bytes) {
    std::set<std::string> lines;
    std::istringstream stream(bytes);
    for (std::string line; std::getline(stream, line);) lines.insert(line);
    return lines;
}

struct Example {
    const char* name;
    const char* score;  // the script that writes it
    std::size_t instruments;
};

void PrintTo(const Example& example, std::ostream* stream) { *stream << example.name; }

class Examples : public testing::TestWithParam<Example> {
protected:
    std::string song = FileBytes(std::string(QUIB_SOURCE_DIR "/examples/") + GetParam().name + ".prg");
    PluginEnvironment environment;
    CPluginFinder finder{QUIB_BIN_DIR, {}, {}};
    PluginLoader load = [this](const PluginReference& wanted, ESlotKind kind, std::string& error) {
        const auto library = finder.Find(wanted, kind);
        return library ? CPlugin::Load(*library, kind, environment, error) : nullptr;
    };
};

TEST_P(Examples, IsWhatItsScoreGives) {
    if (OutputOf("python3 --version").empty()) GTEST_SKIP() << "python3 is not installed";
    const std::string script = std::string("examples/compose/") + GetParam().score + ".py";
    EXPECT_TRUE(OutputOf("python3 -B '" QUIB_SOURCE_DIR "/" + script + "'") == song)
        << "write it anew: python3 " << script << " > examples/" << GetParam().name << ".prg";
}

TEST_P(Examples, LoadsWithoutWarningAndLosesNoLine) {
    ProjectState state;
    std::string error;
    ASSERT_TRUE(ReadProject(song, load, state, error)) << error;
    EXPECT_EQ(state.warnings, std::vector<std::string>());
    EXPECT_EQ(state.instruments.size(), GetParam().instruments);
    const std::set<std::string> saved = LinesOf(generated::BytesOf(state));
    for (const std::string& line : LinesOf(song)) EXPECT_TRUE(saved.contains(line)) << line.substr(0, 200);
}

// A song of 32 bars and more with a playlist, presets, automation, swing, an arpeggio, both sides of the
// crossfader and sends.
TEST_P(Examples, ShowsWhatTheProgramCanDo) {
    const std::string steps = "PLAYLIST_STEP_NUMBER;";
    EXPECT_GE(std::stoi(song.substr(song.find(steps) + steps.size())), 32 * 16);
    for (const char* const record :
         {"SONG_MODE;1", "\nPLAYLIST;", "\nPRESET_ADD;", "\nPARAM_EVENTS;", "\nMIX_EVENTS;",
          "\nPATTERN_MIXPARAM_EVENTS;", "\nARPEG_ON;1.0000", "\nCROSSFADEA;1.0000", "\nCROSSFADEB;1.0000",
          "\nMASTER_MIX_EVENTS;1;", "\nEFFECT1_ON;1.0000", "\nMASTER_INSERT1_PLUGIN;", "\nEFFECT_1;"}) {
        EXPECT_NE(song.find(record), std::string::npos) << record;
    }
    bool swung = false;
    for (const std::string& line : LinesOf(song)) {
        const std::size_t last = line.find_last_of(';', line.find_last_of(';') - 1);
        swung = swung || (line.starts_with("STEPNUMBER_MODE;") && std::stof(line.substr(last + 1)) > 0.0F);
    }
    EXPECT_TRUE(swung);
}

INSTANTIATE_TEST_SUITE_P(All, Examples,
                         testing::Values(Example{"HouseMusic", "house_music", 11}, Example{"HouseYa", "house_ya", 11},
                                         Example{"Siren", "siren", 12}, Example{"Tempo100", "tempo100", 9},
                                         Example{"BassDrums", "bass_drums", 11}),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace quib
