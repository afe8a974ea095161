// SPDX-License-Identifier: GPL-3.0-or-later
// Output through the real ALSA library with a configuration of our own.

#include "CTemporaryFolder.h"
#include "DeviceFixture.h"
#include "devices/CAlsaOutput.h"
#include "devices/CJackLibrary.h"
#include "devices/OutputDeviceList.h"
#include "engine/Int16Frames.h"

namespace quib {
namespace {

class CAlsaOutputTest : public CDeviceTest {
protected:
    void SetUp() override {
        const std::string name = folder.string();
        std::ofstream(folder / "asound.conf")
            << "pcm_type.testcard { lib \"" QUIB_BIN_DIR "/testcard/TestCard.so\" }\n"
            << "pcm.card { type testcard folder \"" << name << "\" hint { show on description \"Card\" } }\n"
            << "pcm.file { type file slave.pcm { type null } file \"" << name << "/sound.raw\" format raw\n"
            << "  hint { show on description \"File\" } }\n";
        setenv("ALSA_CONFIG_PATH", (folder / "asound.conf").c_str(), 1);  // NOLINT(concurrency-mt-unsafe)
        snd_config_update_free_global();
    }
    void TearDown() override { output.CloseOutput(); }
    void AddDefaultDevice() {
        std::ofstream(folder / "asound.conf", std::ios::app) << "pcm.default { type null }\n";
        snd_config_update_free_global();
    }
    void Mark(const char* file) { std::ofstream(folder / file) << "x"; }
    void Unmark(const char* file) { std::filesystem::remove(folder / file); }
    // Entries of a folder of this process in /proc.
    static std::size_t CountOwn(const char* what) {
        const std::filesystem::directory_iterator entries(std::string("/proc/self/") + what);
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }

    const CTemporaryFolder temporary;
    const std::filesystem::path& folder = temporary.Path();
};

TEST_F(CAlsaOutputTest, ADeviceGetsTheRingsSilenceAndThenTheOfflineRender) {
    constexpr int kBlock = 480;
    constexpr std::ptrdiff_t kBlockValues = 2 * kBlock;
    AddSynths(audio, 8);
    audio.Post({EngineCommand::EKind::kPlay});
    ASSERT_TRUE(output.OpenOutput(Settings("file", kBlock)));
    EXPECT_EQ(audio.Format().blockSize, kBlock);
    ASSERT_TRUE(PlayOn(2.0));
    output.CloseOutput();

    std::ifstream file(folder / "sound.raw", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    std::vector<std::int16_t> written(bytes.size() / 2);
    std::memcpy(written.data(), bytes.data(), written.size() * 2);
    const std::size_t frames = written.size() / kBlockValues * kBlock;
    ASSERT_GT(frames, std::size_t{200} * kBlock);
    const auto offline = RenderOffline(8, 48000, kBlock, frames);
    std::vector<std::int16_t> expected(2 * frames);
    ToInt16Frames(offline[0].data(), offline[1].data(), expected.data(), static_cast<int>(frames));
    const auto firstSound = [](const std::vector<std::int16_t>& values) {
        return std::find_if(values.begin(), values.end(), [](std::int16_t value) { return value != 0; }) -
               values.begin();
    };
    // The ring, and whole blocks more while the manager is still opening things.
    const auto silence = firstSound(written) - firstSound(expected);
    EXPECT_GE(silence, 5 * kBlockValues);
    EXPECT_EQ(silence % kBlockValues, 0);
    ASSERT_LT(silence, static_cast<std::ptrdiff_t>(frames)) << "half of it at least is sound";
    EXPECT_GT(*std::max_element(written.begin(), written.end()), 1000);
    written.resize(expected.size());
    EXPECT_TRUE(std::equal(written.begin() + silence, written.end(), expected.begin()));
}

TEST_F(CAlsaOutputTest, PeriodRingAndRateAreThoseOfTheSettingsWhereTheDeviceCan) {
    const struct {
        int rate, block, givenRate, givenBlock;
    } cases[] = {
        {48000, 256, 48000, 256}, {44100, 1000, 44100, 1000}, {96000, 512, 48000, 512}, {44100, 16, 44100, 64}};
    for (const auto& [rate, block, givenRate, givenBlock] : cases) {
        CAlsaOutput device(audio, EFallback::kNone);
        std::string error;
        ASSERT_TRUE(device.Open({"card", rate, block, "OFF", 1}, error)) << error;
        EXPECT_EQ(device.Format(), (DeviceFormat{givenRate, givenBlock}));
        EXPECT_EQ(device.RingFrames(), 5 * givenBlock);
    }
    for (const auto& [rate, block] : {std::pair{0, 512}, {44100, 0}, {44100, 16385}}) {
        CAlsaOutput device(audio, EFallback::kNone);
        std::string error;
        EXPECT_FALSE(device.Open({"card", rate, block, "OFF", 1}, error));
        EXPECT_FALSE(error.empty());
    }
}

TEST_F(CAlsaOutputTest, AnUnknownNameOpensTheDefaultDeviceAndNoDeviceAtAllHoldsTheEngine) {
    EXPECT_FALSE(output.OpenOutput(Settings("Nowhere")));
    EXPECT_EQ(messages, std::vector<std::string>{"QUIBBOX|Cannot open: Nowhere"});
    EXPECT_FALSE(audio.RenderBlock()) << "blocks are refused until a device is there";
    EXPECT_EQ(output.Device(), nullptr);

    AddDefaultDevice();
    for (const char* const name : {"Nowhere", "", "Speakers (USB): 2", "hw:", "plug:{"}) {
        ASSERT_TRUE(output.OpenOutput(Settings(name))) << name;
        EXPECT_TRUE(PlaysOn("default")) << name;
    }
    output.CloseOutput();
    EXPECT_TRUE(audio.RenderBlock());
    EXPECT_EQ(messages.size(), 1U);
}

TEST_F(CAlsaOutputTest, ABusyCardIsTriedAgainAndOneThatDoesNotStartIsReported) {
    AddDefaultDevice();
    PlayPatterns();
    Mark("busy");
    ASSERT_TRUE(output.OpenOutput(Settings("card")));
    EXPECT_TRUE(PlaysOn("card"));
    EXPECT_TRUE(messages.empty());
    Mark("mute");
    EXPECT_FALSE(output.OpenOutput(Settings("card")));
    EXPECT_EQ(messages, std::vector<std::string>{"QUIBBOX|Cannot open: card"});
    EXPECT_FALSE(audio.RenderBlock());
    Unmark("mute");
    ASSERT_TRUE(output.OpenOutput(Settings("card")));
    ASSERT_TRUE(PlayOn(0.05));
}

TEST_F(CAlsaOutputTest, WithoutAServerTheNameOfJackIsReportedAndTheDefaultDevicePlays) {
    if (CJackLibrary::Load() == nullptr) GTEST_SKIP() << "libjack is not installed";
    setenv("JACK_DEFAULT_SERVER", "quib-no-such-server", 1);  // NOLINT(concurrency-mt-unsafe)
    AddDefaultDevice();
    ASSERT_TRUE(output.OpenOutput(Settings("JACK")));
    EXPECT_TRUE(PlaysOn("default"));
    EXPECT_EQ(messages, std::vector<std::string>{"QUIBBOX|Cannot open JACK: JACK"});
}

TEST_F(CAlsaOutputTest, ARingThatRunsDryIsCountedAndFilledAgain) {
    ASSERT_TRUE(output.OpenOutput(Settings("card", 256)));
    PlayPatterns();
    ASSERT_TRUE(PlayOn(0.1));
    EXPECT_EQ(output.Xruns(), 0U);
    for (std::uint64_t count = 1; count <= 3; ++count) {
        Mark("dry");
        ASSERT_TRUE(TurnUntil([&] { return output.Xruns() == count; }));
        ASSERT_TRUE(PlayOn(0.1));
    }
    EXPECT_TRUE(PlaysOn("card"));
    EXPECT_TRUE(messages.empty());
}

TEST_F(CAlsaOutputTest, ACardThatGoesAwayIsStoodInForAndTakenBackAndTheUserToldOnce) {
    AddDefaultDevice();
    SetPattern(AddInstrument("KeyCounter"), 0, 16, EveryStep(16, 60));
    ASSERT_TRUE(output.OpenOutput(Settings("card", 256)));
    PlayPatterns();
    ASSERT_TRUE(PlayOn(0.1));
    for (std::size_t round = 1; round <= 3; ++round) {
        Mark("absent");
        ASSERT_TRUE(TurnUntil([&] { return PlaysOn("Silent"); }));
        ASSERT_TRUE(PlayOn(0.7)) << "the transport stands still";
        EXPECT_TRUE(PlaysOn("Silent")) << "another device took its place";
        Unmark("absent");
        ASSERT_TRUE(TurnUntil([&] { return PlaysOn("card"); }));
        ASSERT_TRUE(PlayOn(0.1));
        EXPECT_EQ(messages.size(), round);
    }
    EXPECT_EQ(messages.front(), "QUIBBOX|card is gone");
}

TEST_F(CAlsaOutputTest, PauseAndSilenceKeepTimeWithoutTheTransport) {
    PlayPatterns();
    for (const char* const name : {"card", "Silent"}) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(output.OpenOutput(Settings(name, 256)));
        const auto start = std::chrono::steady_clock::now();
        ASSERT_TRUE(PlayOn(0.5));
        // Late it may be, on a machine with other things to do, but not early by more than its ring.
        EXPECT_GT(Seconds(std::chrono::steady_clock::now() - start).count(), 0.5 - 6 * 256.0 / 48000);
        audio.paused.Set(1.0F);
        for (int turn = 0; turn < 10; ++turn) Turn();
        const std::int64_t pausedAt = audio.Picture().sampleCounter;
        for (int turn = 0; turn < 20; ++turn) Turn();
        EXPECT_EQ(audio.Picture().sampleCounter, pausedAt);
        audio.paused.Set(0.0F);
        ASSERT_TRUE(PlayOn(0.1));
    }
}

TEST_F(CAlsaOutputTest, OpeningAgainAndAgainLeavesNoThreadAndNoDescriptorBehind) {
    SetPattern(AddInstrument("KeyCounter"), 0, 16, EveryStep(16, 60));
    ASSERT_TRUE(output.OpenOutput(Settings("card", 128)));
    PlayPatterns();
    ASSERT_TRUE(PlayOn(0.05));
    const std::size_t descriptors = CountOwn("fd");
    const std::size_t threads = CountOwn("task");
    for (int round = 0; round < 30; ++round) {
        const char* const names[] = {"Silent", "file", "card"};
        ASSERT_TRUE(output.OpenOutput(Settings(names[round % 3], 64 << round % 4)));
        ASSERT_TRUE(PlayOn(0.02)) << round;
    }
    ASSERT_TRUE(output.OpenOutput(Settings("card", 128)));
    EXPECT_EQ(CountOwn("fd"), descriptors);
    EXPECT_EQ(CountOwn("task"), threads);
    EXPECT_TRUE(messages.empty());
}

TEST_F(CAlsaOutputTest, TheListNamesTheConfiguredDevicesAndSilent) {
    const std::vector<std::string> names = ListOutputDevices();
    for (const char* const name : {"card", "file", "Silent"}) {
        EXPECT_EQ(std::count(names.begin(), names.end(), name), 1) << name;
    }
    EXPECT_EQ(names.back(), "Silent");
}

}  // namespace
}  // namespace quib
