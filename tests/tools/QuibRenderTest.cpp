// SPDX-License-Identifier: GPL-3.0-or-later
#include "ToolFixture.h"

namespace quib {
namespace {

class CQuibRenderTest : public CToolTest {
protected:
    static constexpr const char* kTestPlugins = " --plugins " QUIB_BIN_DIR "/testplugins ";

    // Two instruments in pattern mode: one note a step with swing, and one every three steps.
    static std::string Project(const std::string& secondPlugin = "NoteProbe.dll") {
        std::string text = "VERSION;1.5;\r\nTEMPO;133.000000;\r\nSONG_MODE;0.000000;\r\n";
        text += Instrument("NoteProbe.dll", 16, 1, "0.2500");
        text += Instrument(secondPlugin, 12, 3, "0.0000");
        return text;
    }

    static std::string Instrument(const std::string& plugin, int steps, int every, const std::string& swing) {
        std::string text = "PLUGIN;" + plugin + ";\r\nTITLE;Part;\r\nLEVEL;100.0000;\r\nEQ_ON;1.0000;\r\n";
        text += "PATTERNS;START;\r\nSTEPNUMBER_MODE;49;0;" + swing + ";\r\n";
        text += "PATTERN_NOTES;0;" + std::to_string(steps) + ";1;";
        for (int step = 0; step < steps; step += every) {
            text += std::to_string(step) + ".3000;" + std::to_string(40 + step) + ";0.6000;100;";
        }
        return text + "\r\nPATTERNS;END;\r\nPLUGIN;END;\r\n";
    }

    // Samples of a Wave file without its header.
    std::string Samples(const std::string& name) const {
        const std::string bytes = Read(name);
        const std::size_t chunk = bytes.find("data");
        std::uint32_t size = 0;
        if (chunk < bytes.size()) std::memcpy(&size, bytes.data() + chunk + 4, sizeof size);
        return size > 0 ? bytes.substr(chunk + 8, size) : std::string();
    }

    // The 16-bit value of that index, both channels counted.
    static int ValueAt(const std::string& samples, std::size_t index) {
        return static_cast<std::int16_t>(static_cast<unsigned char>(samples[2 * index]) |
                                         static_cast<unsigned char>(samples[2 * index + 1]) << 8);
    }
};

TEST_F(CQuibRenderTest, TheSameProjectGivesTheSameBytesWhateverTheThreads) {
    Write("song.prg", Project());
    for (const char* const run : {"a.wav --threads 1", "b.wav --threads 2", "c.wav --threads 4", "d.wav --threads 2"}) {
        ASSERT_EQ(Run("quib-render", Path("song.prg") + " " + Path("") + run + kTestPlugins).exitCode, 0);
    }
    EXPECT_GT(Read("a.wav").size(), 400000U);
    for (const char* const other : {"b.wav", "c.wav", "d.wav"}) EXPECT_TRUE(Read("a.wav") == Read(other)) << other;
}

TEST_F(CQuibRenderTest, TheSameNotesFallOnTheSameSamplesForEveryBlockSize) {
    Write("song.prg", Project());
    for (const char* const block : {"64", "256", "2048"}) {
        const std::string arguments = Path("song.prg") + " " + Path(std::string(block) + ".wav") + " --block " + block;
        ASSERT_EQ(Run("quib-render", arguments + kTestPlugins).exitCode, 0);
    }
    // Two passes of the longest pattern; what follows is the tail, which ends with a whole block.
    const std::size_t music = 32 * 4974 * 4;
    const std::string reference = Samples("64.wav").substr(0, music);
    ASSERT_EQ(reference.size(), music);
    EXPECT_NE(reference.find_first_not_of('\0'), std::string::npos);
    for (const char* const other : {"256.wav", "2048.wav"}) {
        EXPECT_TRUE(Samples(other).substr(0, music) == reference) << other;
    }
}

TEST_F(CQuibRenderTest, AMissingPluginIsNamedAndTheRestIsRendered) {
    Write("song.prg", Project("Nowhere.dll"));
    const Outcome outcome = Run("quib-render", Path("song.prg") + " " + Path("out.wav") + " --json" + kTestPlugins);
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.error.find("Nowhere.dll"), std::string::npos);
    EXPECT_EQ(std::count(outcome.error.begin(), outcome.error.end(), '\n'), 1);
    EXPECT_NE(outcome.output.find("\"missing_plugins\": [\"Nowhere.dll\"]"), std::string::npos);
    EXPECT_NE(Samples("out.wav").find_first_not_of('\0'), std::string::npos);
}

TEST_F(CQuibRenderTest, ADamagedProjectRendersWhatCanBeRead) {
    const std::string whole = Project();
    Write("cut.prg", whole.substr(0, whole.size() - 60));
    EXPECT_EQ(Run("quib-render", Path("cut.prg") + " " + Path("out.wav") + kTestPlugins).exitCode, 0);
    EXPECT_NE(Samples("out.wav").find_first_not_of('\0'), std::string::npos);

    Write("noise.prg", std::string("\x01\x02;;;\n\xff", 7));
    const Outcome noise = Run("quib-render", Path("noise.prg") + " " + Path("noise.wav"));
    EXPECT_EQ(noise.exitCode, 1);
    EXPECT_NE(noise.error.find("noise.prg"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(Path("noise.wav")));
}

TEST_F(CQuibRenderTest, LengthModeAndFailuresFollowTheOptions) {
    Write("song.prg", Project());
    const std::string song = Path("song.prg") + " ";
    Outcome outcome = Run("quib-render", song + Path("s.wav") + " --seconds 2 --rate 48000 --json" + kTestPlugins);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_GT(Samples("s.wav").size(), 2 * 48000U * 4);
    EXPECT_LT(Samples("s.wav").size(), 3 * 48000U * 4);
    for (const char* const key : {"frames", "rate", "peak", "rms", "seconds", "render_cpu_seconds", "realtime_factor",
                                  "threads", "instruments", "missing_plugins"}) {
        EXPECT_NE(outcome.output.find(std::string("\"") + key + "\": "), std::string::npos) << key;
    }
    EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), 1);

    outcome = Run("quib-render", song + Path("empty.wav") + " --mode song" + kTestPlugins);
    EXPECT_EQ(outcome.exitCode, 1) << "a song without entries is no song";
    EXPECT_NE(outcome.error.find("--mode pattern"), std::string::npos) << outcome.error;
    EXPECT_FALSE(std::filesystem::exists(Path("empty.wav")));

    EXPECT_EQ(Run("quib-render", song).exitCode, 2);
    EXPECT_EQ(Run("quib-render", song + "x.wav --block 0").exitCode, 2);
    EXPECT_EQ(Run("quib-render", song + "x.wav --steps 4 --seconds 1").exitCode, 2);
    EXPECT_EQ(Run("quib-render", Path("none.prg") + " " + Path("x.wav")).exitCode, 1);
    // Nothing of the user's is written over, and no file is called what it is not.
    std::filesystem::create_hard_link(Path("song.prg"), Path("same.wav"));
    for (const char* const wrong : {"song.prg", "same.wav", "out.aiff", "out", "--resave song.prg"}) {
        const std::string words = std::string("cd ") + Path("") + "; " QUIB_BIN_DIR "/quib-render song.prg " + wrong;
        EXPECT_EQ(RunCommand("sh -c '" + words + kTestPlugins + "'").exitCode, 2) << wrong;
    }
    EXPECT_EQ(Read("song.prg"), Project());
    std::filesystem::create_symlink("/dev/full", Path("full.wav"));
    outcome = Run("quib-render", song + Path("full.wav") + kTestPlugins);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.error.find("No space left"), std::string::npos);
}

TEST_F(CQuibRenderTest, AChainIsRenderedToItsEndTwice) {
    std::string chain = Project();
    chain = chain.substr(0, chain.rfind("PLUGIN;NoteProbe.dll"));
    chain.replace(chain.find(";49;0;"), 6, ";49;1;");
    chain.insert(chain.find("PATTERNS;END"),
                 "PATTERN_NOTES;3;32;1;2.0000;60;1.0000;100;\r\n"
                 "PATTERN_NOTES;9;48;1;2.0000;60;1.0000;100;\r\n");
    Write("song.prg", chain);
    ASSERT_EQ(Run("quib-render", Path("song.prg") + " " + Path("chain.wav") + kTestPlugins).exitCode, 0);
    constexpr double kSteps = 2 * (16 + 32 + 48);
    EXPECT_NEAR(static_cast<double>(Samples("chain.wav").size()) / 4 / 4974, kSteps, 4);
}

TEST_F(CQuibRenderTest, ASignalEndsARenderAndARecordingAndALimitIsAnError) {
    Write("song.prg", Project());
    const std::string render = " " QUIB_BIN_DIR "/quib-render " + Path("song.prg") + " " + Path("out.wav");
    for (const char* const signal : {"HUP", "TERM"}) {
        const std::string words = std::string("timeout --preserve-status -s ") + signal + " 1" + render + kTestPlugins;
        EXPECT_EQ(RunCommand(words + "--play --device Silent").exitCode, 0) << signal;
        EXPECT_GT(Samples("out.wav").size(), 40000U) << "the recording is closed";
        const Outcome outcome = RunCommand(words + "--seconds 80000 --block 16");
        EXPECT_EQ(outcome.exitCode, 1) << signal;
        EXPECT_NE(outcome.error.find("stopped by the user"), std::string::npos);
    }
    // A limit of the user is a write that fails.
    const Outcome outcome = RunCommand("sh -c 'ulimit -f 200;" + render + kTestPlugins + "'");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.error.find("File too large"), std::string::npos) << outcome.error;
}

TEST_F(CQuibRenderTest, SavingAgainIsStableAndKeepsAMissingPlugin) {
    Write("song.prg", Project("Nowhere.dll"));
    EXPECT_EQ(Run("quib-render", "--resave " + Path("2.prg") + " " + Path("song.prg") + kTestPlugins).exitCode, 3);
    EXPECT_EQ(Run("quib-render", "--resave " + Path("3.prg") + " " + Path("2.prg") + kTestPlugins).exitCode, 3);
    EXPECT_EQ(Read("2.prg"), Read("3.prg"));
    EXPECT_NE(Read("2.prg").find("PLUGIN;Nowhere.dll;"), std::string::npos);
}

TEST_F(CQuibRenderTest, StemsAddUpToTheMaster) {
    Write("song.prg", Project() + Instrument("Nowhere.dll", 8, 1, "0.0"));
    const std::string arguments = Path("song.prg") + " " + Path("all.wav") + " --stems " + Path("stems");
    EXPECT_EQ(Run("quib-render", arguments + kTestPlugins).exitCode, 3);
    const std::string master = Samples("all.wav");
    const std::string first = Samples("stems/01 Part.wav");
    const std::string second = Samples("stems/02 Part.wav");
    EXPECT_FALSE(std::filesystem::exists(Path("stems/03 Part.wav")));
    ASSERT_EQ(first.size(), master.size());
    ASSERT_EQ(second.size(), master.size());
    int loudest = 0;
    for (std::size_t index = 0; index < master.size() / 2; ++index) {
        const int sum = ValueAt(first, index) + ValueAt(second, index);
        loudest = std::max(loudest, sum);
        ASSERT_NEAR(sum, ValueAt(master, index), 2) << index;
    }
    EXPECT_GT(loudest, 1000);
}

TEST_F(CQuibRenderTest, PlayingKeepsTimeAndItsRecordingIsWhatIsRenderedAndExported) {
#ifdef QUIB_SANITIZED
    GTEST_SKIP() << "a song is too much to be played in time";
#endif
    // The recording has begun before Play, and ends while the last sound rings.
    const auto sound = [](const std::string& samples) { return samples.substr(samples.find_first_not_of('\0') & ~3U); };
    for (const auto& [name, step] : {std::pair("Tempo100", 6615U), std::pair("HouseYa", 5250U)}) {
        const std::string song = std::string(QUIB_SOURCE_DIR "/examples/") + name + ".prg ";
        Outcome live;
        for (int turn = 0; turn < 3 && live.error.find(": 0 xruns, ") == std::string::npos; ++turn) {
            live = Run("quib-render", song + Path("live.wav") + " --play --device Silent --steps 16");
            ASSERT_EQ(live.exitCode, 0);
        }
        ASSERT_EQ(Run("quib-render", song + Path("rendered.wav") + " --steps 16").exitCode, 0);
        ASSERT_EQ(Run("quib-render", song + Path("exported.wav") + " --steps 16 --bits 16").exitCode, 0);
        const std::string rendered = Samples("rendered.wav");
        EXPECT_TRUE(Samples("exported.wav") == rendered) << name;
        const std::string recorded = sound(Samples("live.wav"));
        const std::size_t common = std::size_t{16} * step * 4;
        EXPECT_GT(recorded.size(), common) << name;
        EXPECT_TRUE(sound(rendered).starts_with(recorded.substr(0, common))) << name;
    }
}

TEST_F(CQuibRenderTest, PlayingKeepsTimeRecordsAndCounts) {
    Write("song.prg", Project());
    const std::string play = Path("song.prg") + " --play --device Silent --rate 48000 --block 256" + kTestPlugins;
    Outcome outcome = Run("quib-render", play + Path("live.wav") + " --seconds 1.5");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_NE(outcome.error.find("playing on Silent, 48000 Hz, blocks of 256 frames"), std::string::npos);
    EXPECT_NE(outcome.error.find("0 xruns, 0 MIDI messages dropped"), std::string::npos) << outcome.error;
    const std::size_t frames = Samples("live.wav").size() / 4;
    EXPECT_NEAR(static_cast<double>(frames), 1.5 * 48000, 0.8 * 48000);

    // A live recording holds what the offline render does, in the steps that both play.
    ASSERT_EQ(Run("quib-render",
                  Path("song.prg") + " " + Path("offline.wav") + " --steps 4 --rate 48000 --block 256" + kTestPlugins)
                  .exitCode,
              0);
    const std::string offline = Samples("offline.wav");
    const std::string live = Samples("live.wav");
    const std::size_t offlineStart = offline.find_first_not_of('\0') / 2;
    const std::size_t liveStart = live.find_first_not_of('\0') / 2;
    constexpr std::size_t kCompared = 2 * 4 * 5000;
    ASSERT_GT(live.size() / 2, liveStart + kCompared);
    ASSERT_GT(offline.size() / 2, offlineStart + kCompared);
    for (std::size_t index = 0; index < kCompared; ++index) {
        ASSERT_EQ(ValueAt(live, liveStart + index), ValueAt(offline, offlineStart + index)) << index;
    }

    outcome = RunCommand("timeout --preserve-status -s INT 1 " QUIB_BIN_DIR "/quib-render " + play);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(outcome.error.find("0 xruns"), std::string::npos) << outcome.error;
    EXPECT_EQ(Run("quib-render", Path("song.prg") + " --device Silent " + Path("x.wav")).exitCode, 2);
}

TEST_F(CQuibRenderTest, WithoutTheJackLibraryTheProgramStartsAndDoesNotOfferIt) {
    Write("libjack.so.0", "not a library");
    const Outcome outcome = RunCommand("env LD_LIBRARY_PATH=" + Path("") + " " QUIB_BIN_DIR "/quib-render --list");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output.find("JACK"), std::string::npos);
    EXPECT_NE(outcome.output.find("sound Silent\n"), std::string::npos);
}

class CQuibScanTest : public CToolTest {};

TEST_F(CQuibScanTest, APluginIsDescribedAndPlayed) {
    const Outcome outcome = Run("quib-scan", QUIB_BIN_DIR "/testplugins/NoteProbe.so --render");
    EXPECT_EQ(outcome.exitCode, 0);
    for (const char* const field : {"\"name\": \"Note probe\"", "\"id\": \"74734e50\"", "\"category\": 2",
                                    "\"outputs\": 2", "\"midi\": true", "\"finite\": true"}) {
        EXPECT_NE(outcome.output.find(field), std::string::npos) << field << " in " << outcome.output;
    }
}

TEST_F(CQuibScanTest, WhatIsNoPluginFailsWithAReason) {
    const std::pair<const char*, int> codes[] = {
        {"NoEntry.so", 1}, {"Refuses.so", 1}, {"Hangs.so", 3}, {"Exits.so", 4}, {"absent.so", 1}};
    for (const auto& [library, code] : codes) {
        const Outcome outcome = Run("quib-scan", std::string(QUIB_BIN_DIR "/testplugins/") + library + " --timeout 1");
        EXPECT_EQ(outcome.exitCode, code) << library;
        EXPECT_TRUE(outcome.output.empty()) << library;
        EXPECT_NE(outcome.error.find("quib-scan: "), std::string::npos) << library;
    }
}

}  // namespace
}  // namespace quib
