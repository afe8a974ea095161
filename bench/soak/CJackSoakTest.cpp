// SPDX-License-Identifier: GPL-3.0-or-later
// A real JACK server, for long: deadlines, deaths, latency.
#include <csignal>

#include "SoakReport.h"
#include "devices/DeviceFixture.h"
#include "devices/JackServer.h"

namespace quib {
namespace {

constexpr int kRate = 48000;

class CJackSoakTest : public CDeviceTest {
protected:
    void SetUp() override {
        if (!CJackServer::IsInstalled()) GTEST_SKIP() << "jackd is not installed";
    }
    void TearDown() override { output.CloseOutput(); }
};

// Xruns of a program that does nothing.
int IdleXruns(double seconds) {
    const CJackPeer idle;
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    return idle.Xruns();
}

TEST_F(CJackSoakTest, SixteenInstrumentsAt64FramesMissNoDeadline) {
#ifdef QUIB_SANITIZED
    GTEST_SKIP() << "instrumented code is too slow for it";
#endif
    constexpr int kBlock = 64;
    CJackServer server(kBlock, CJackServer::EMode::kRealTime);
    ASSERT_TRUE(server.Start());
    AddSynths(audio, 16);
    const double seconds = IsLong() ? 60.0 : 3.0;
    PlayPatterns();
    ASSERT_TRUE(output.OpenOutput(Settings("JACK")));
    double load = 0;
    const auto end = std::chrono::steady_clock::now() + Seconds(seconds);
    while (std::chrono::steady_clock::now() < end) {
        Turn();
        load = std::max(load, static_cast<double>(audio.CpuLoad()));
    }
    const std::uint64_t missed = output.Xruns();
    const double played = static_cast<double>(audio.Picture().sampleCounter) / kRate;
    const bool realTime = output.Device()->IsRealTime();
    EXPECT_TRUE(PlaysOn("JACK"));
    output.CloseOutput();
    const int idle = missed > 0 ? IdleXruns(seconds) : 0;
    Report("Deadlines", fmt::format("16 instruments, {} frames, {} Hz: {} xruns in {} s, highest load {:.0f} %{}{}",
                                    kBlock, kRate, missed, seconds, load, realTime ? "" : ", no real-time priority",
                                    missed > 0 ? fmt::format("; an idle program had {}", idle) : ""));
    if (IsLong()) {
        EXPECT_EQ(missed, 0U) << "of the machine's own doing, perhaps: an idle program had " << idle;
        EXPECT_GT(played, 0.99 * seconds);
    } else if (idle == 0) {
        EXPECT_LT(static_cast<double>(missed), 0.5 * seconds * kRate / kBlock);
    }
}

TEST_F(CJackSoakTest, KillingTheServerLeavesThePlayingOnAndItsReturnBringsTheSoundBack) {
    CJackServer server(256, CJackServer::EMode::kRealTime);
    ASSERT_TRUE(server.Start());
    CInstrument& instrument = AddInstrument("KeyCounter");
    SetPattern(instrument, 0, 16, EveryStep(16, 60));
    ASSERT_TRUE(output.OpenOutput(Settings("JACK")));
    PlayPatterns();
    ASSERT_TRUE(PlayOn(0.05));
    const int restarts = IsLong() ? 50 : 3;
    double slowest = 0;
    for (int restart = 0; restart < restarts; ++restart) {
        SCOPED_TRACE(restart);
        server.Stop(restart % 2 == 0 ? SIGKILL : SIGTERM);
        ASSERT_TRUE(TurnUntil([&] { return PlaysOn("Silent"); })) << "no stand-in";
        ASSERT_TRUE(PlayOn(0.1)) << "the transport stands still";
        ASSERT_TRUE(server.Start());
        const auto start = std::chrono::steady_clock::now();
        ASSERT_TRUE(TurnUntil([&] { return PlaysOn("JACK"); }));
        CJackPeer peer(4096);
        ASSERT_TRUE(peer.RecordProgram());
        ASSERT_TRUE(TurnUntil([&] { return peer.Recorded() == 4096 && peer.Channel(1).back() != 0.0F; }));
        const Seconds silence = std::chrono::steady_clock::now() - start;
        if (IsLong()) {
            EXPECT_LT(silence.count(), 2.0);
        }
        slowest = std::max(slowest, silence.count());
        EXPECT_EQ(peer.Connections("QUIB Sequencer:left"),
                  (std::vector<std::string>{"system:playback_1", "peer:in_1"}));
    }
    EXPECT_EQ(messages.size(), static_cast<std::size_t>(restarts));
    EXPECT_EQ(messages.front(), "QUIBBOX|JACK is gone");
    EXPECT_TRUE(audio.Picture().playing);

    // No key hangs: after the stop none is down.
    Command(EngineCommand::EKind::kStop);
    ASSERT_TRUE(TurnUntil([&] { return !audio.Picture().playing; }));
    CJackPeer peer(8192);
    ASSERT_TRUE(peer.RecordProgram());
    ASSERT_TRUE(TurnUntil([&] { return peer.Recorded() == 8192; }));
    EXPECT_EQ(peer.Channel(0).back(), 0.0F);
    EXPECT_NE(peer.Channel(1).back(), 0.0F);
    Report("Server kills",
           fmt::format("{} survived; sound back at the latest {:.2f} s after the server", restarts, slowest));
}

// From the frame at which another program sends a note to the frame at which it hears it, one block of which
// JACK itself takes where two programs feed each other.
TEST_F(CJackSoakTest, NotesAreHeardWithinTwoBlocksAtEveryBlockSize) {
    constexpr int kNotes = 20;
    CJackServer server(64);
    ASSERT_TRUE(server.Start());
    AddInstrument("NoteProbe").midi.channel.Set(kChannelOmni);
    CJackPeer peer(std::size_t{kRate} * 60);
    AudioSettings settings = Settings("JACK");
    settings.midiInDevice = "peer:midi";
    ASSERT_TRUE(output.OpenOutput(settings));
    ASSERT_TRUE(peer.RecordProgram());
    for (const int block : {32, 64, 128, 256, 512, 1024, 2048}) {
        peer.SetBlockSize(block);
        ASSERT_TRUE(TurnUntil([&] { return audio.Format().blockSize == block && PlaysOn("JACK"); }));
        std::size_t sum = 0;
        std::size_t most = 0;
        for (int note = 0; note < kNotes; ++note) {
            ASSERT_TRUE(peer.SendMidi({0x90, 100, 100}, note * block / kNotes));
            const std::size_t sent = peer.SentAt();
            ASSERT_TRUE(TurnUntil([&] { return peer.Recorded() >= sent + 4 * static_cast<std::size_t>(block); }));
            const std::vector<float> heard = peer.Channel(0);
            const auto first = std::find_if(heard.begin() + static_cast<std::ptrdiff_t>(sent), heard.end(),
                                            [](float sample) { return sample != 0.0F; });
            ASSERT_NE(first, heard.end()) << "note " << note << " was not heard";
            const auto latency = static_cast<std::size_t>(first - heard.begin()) - sent;
            sum += latency;
            most = std::max(most, latency);
        }
        EXPECT_LE(most, 2 * static_cast<std::size_t>(block));
        const double mean = static_cast<double>(sum) / kNotes;
        Report("MIDI latency",
               fmt::format("{:5} frames a block: mean {:7.1f} frames ({:5.2f} ms), most {:5} ({:5.2f} ms)", block, mean,
                           mean * 1000 / kRate, most, static_cast<double>(most) * 1000 / kRate));
    }
}

}  // namespace
}  // namespace quib
