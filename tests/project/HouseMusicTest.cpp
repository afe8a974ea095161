// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

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

class HouseMusic : public testing::Test {
protected:
    std::string song = FileBytes(QUIB_SOURCE_DIR "/examples/HouseMusic.prg");
    PluginEnvironment environment;
    CPluginFinder finder{QUIB_BIN_DIR, {}, {}};
    PluginLoader load = [this](const std::string& name, SlotKind kind, std::string& error) {
        const auto library = finder.Find(name, kind);
        return library ? CPlugin::Load(*library, kind, environment, error) : nullptr;
    };
};

TEST_F(HouseMusic, IsWhatItsScoreGives) {
    if (OutputOf("python3 --version").empty()) GTEST_SKIP() << "python3 is not installed";
    const std::string score = OutputOf("python3 -B '" QUIB_SOURCE_DIR "/examples/compose/house_music.py'");
    EXPECT_TRUE(score == song) << "write it anew: python3 examples/compose/house_music.py > examples/HouseMusic.prg";
}

TEST_F(HouseMusic, LoadsWithoutWarningAndLosesNoLine) {
    ProjectState state;
    std::string error;
    ASSERT_TRUE(ReadProject(song, load, state, error)) << error;
    EXPECT_EQ(state.warnings, std::vector<std::string>());
    EXPECT_EQ(state.instruments.size(), 10U);
    const std::set<std::string> saved = LinesOf(generated::BytesOf(state));
    for (const std::string& line : LinesOf(song)) EXPECT_TRUE(saved.contains(line)) << line.substr(0, 200);
}

}  // namespace
}  // namespace quib
