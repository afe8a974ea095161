// SPDX-License-Identifier: GPL-3.0-or-later
#include "DeviceFixture.h"
#include "JackServer.h"

#include <csignal>

namespace quib {
namespace {

constexpr int kRate = 48000;

std::size_t FirstSound(const std::vector<float>& samples) {
    const auto first = std::find_if(samples.begin(), samples.end(), [](float sample) { return sample != 0.0F; });
    return static_cast<std::size_t>(first - samples.begin());
}

class CJackOutputTest : public CDeviceTest {
protected:
    void SetUp() override {
        if (!CJackServer::IsInstalled()) GTEST_SKIP() << "jackd is not installed";
    }
    void TearDown() override { output.CloseOutput(); }
    // The wiring is looked at twice a second, and taken for the user's wish when it is found again.
    void WaitForWatches() {
        for (int watch = 0; watch < 3; ++watch) {
            std::this_thread::sleep_for(std::chrono::milliseconds(510));
            Turn();
        }
    }
};

// What another program records of a fresh engine from its first block on.
std::array<std::vector<float>, 2> RecordLive(int synths, int blockSize, std::size_t frames) {
    CAudio engine;
    COutputManager manager(engine, {"", ""},
                           [](const std::string&, const std::string& text) { ADD_FAILURE() << text; });
    CDeviceTest::AddSynths(engine, synths);
    engine.Post({EngineCommand::EKind::kPlay});
    engine.Hold();  // until the recorder is connected
    EXPECT_TRUE(manager.OpenOutput({"JACK", 44100, 2048, "OFF", 1}));
    EXPECT_EQ(engine.Format().sampleRate, kRate);
    EXPECT_EQ(engine.Format().blockSize, blockSize);
    CJackPeer peer(frames + kRate / 2);
    EXPECT_TRUE(peer.RecordProgram());
    while (peer.Recorded() < kRate / 10) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    engine.Release();
    while (peer.Recorded() < frames + kRate / 2) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return {peer.Channel(0), peer.Channel(1)};
}

TEST_F(CJackOutputTest, AnotherProgramRecordsTheOfflineRenderBitForBit) {
    constexpr int kBlock = 64;
    constexpr std::size_t kFrames = 3 * kRate;
    CJackServer server(kBlock);
    ASSERT_TRUE(server.Start());
    const auto offline = RenderOffline(16, kRate, kBlock, kFrames);
    const auto live = RecordLive(16, kBlock, kFrames);
    for (const std::size_t channel : {0U, 1U}) {
        const std::size_t from = FirstSound(live[channel]);
        const std::size_t start = FirstSound(offline[channel]);
        ASSERT_LT(start, kFrames / 2);
        ASSERT_LE(from + kFrames - start, live[channel].size());
        const auto end = offline[channel].end();
        const auto difference =
            std::mismatch(offline[channel].begin() + static_cast<std::ptrdiff_t>(start), end,
                          live[channel].begin() + static_cast<std::ptrdiff_t>(from),
                          [](float a, float b) { return std::bit_cast<int>(a) == std::bit_cast<int>(b); });
        EXPECT_EQ(end - difference.first, 0) << "frames before the end";
    }
}

TEST_F(CJackOutputTest, NotesOfAnotherProgramSoundAndEndWithTheServer) {
    CJackServer server(256);
    ASSERT_TRUE(server.Start());
    AddInstrument("KeyCounter").midi.channel.Set(kChannelOmni);
    {
        CJackPeer peer;
        AudioSettings settings = Settings("JACK");
        settings.midiInDevice = "peer:midi";
        ASSERT_TRUE(output.OpenOutput(settings));
        const std::vector<std::string> names = output.ListMidiInputs();
        EXPECT_EQ(std::count(names.begin(), names.end(), "peer:midi"), 1);
        ASSERT_EQ(peer.Connections("QUIB Sequencer:midi_in"), std::vector<std::string>{"peer:midi"});
        ASSERT_TRUE(peer.RecordProgram());
        const auto heard = [&] { return peer.Last(0); };
        // A message may get lost before a connection works: again, then.
        const auto hears = [&](std::array<unsigned char, 3> message, const std::function<bool()>& condition) {
            for (int attempt = 0; attempt < 5; ++attempt) {
                if (peer.SendMidi(message) && TurnUntil(condition, 0.5)) return true;
            }
            return false;
        };
        ASSERT_TRUE(hears({0x90, 60, 100}, [&] { return heard() > 0.0F; }));
        const float one = heard();
        ASSERT_TRUE(hears({0x90, 64, 100}, [&] { return heard() > 1.5F * one; }));
        ASSERT_TRUE(hears({0x80, 60, 0}, [&] { return heard() < 1.5F * one; }));
        EXPECT_GT(heard(), 0.0F);

        ASSERT_TRUE(output.OpenMidiIn("OFF"));
        ASSERT_TRUE(TurnUntil([&] { return heard() == 0.0F; })) << "the held key hangs";
        EXPECT_FALSE(hears({0x90, 72, 100}, [&] { return heard() > 0.0F; }));
        ASSERT_TRUE(output.OpenMidiIn("peer:midi"));
        ASSERT_TRUE(hears({0x90, 72, 100}, [&] { return heard() > 0.0F; }));
        ASSERT_TRUE(peer.Disconnect("peer:midi", "QUIB Sequencer:midi_in"));
        ASSERT_TRUE(TurnUntil([&] { return heard() == 0.0F; })) << "the key of a cut cable hangs";
        ASSERT_TRUE(peer.Connect("peer:midi", "QUIB Sequencer:midi_in"));
        ASSERT_TRUE(hears({0x90, 72, 100}, [&] { return heard() > 0.0F; }));
    }
    {
        CJackPeer witness;
        ASSERT_TRUE(witness.RecordProgram());
        ASSERT_TRUE(TurnUntil([&] { return witness.Last(1) > 0.0F; }));
        EXPECT_TRUE(TurnUntil([&] { return witness.Last(0) == 0.0F; })) << "the key of a program that ended hangs";
    }
    server.Stop(SIGKILL);
    ASSERT_TRUE(TurnUntil([&] { return PlaysOn("Silent"); }));
    for (int turn = 0; turn < 20; ++turn) Turn();
    const CPlugin& plugin = *audio.instruments.ForEdit()->front()->plugin.ForEdit()->plugin;
    output.CloseOutput();
    EXPECT_EQ(plugin.Output(0)[0], 0.0F);
}

// Every message sounds on the frame where it was sent, and is told as played to what was heard then.
TEST_F(CJackOutputTest, NotesAreToldWithinASampleOfWhereTheyWerePlayed) {
    constexpr int kBlock = 256;
    const int notes = std::getenv("QUIB_THOROUGH") != nullptr ? 1000 : 60;
    CJackServer server(kBlock);
    ASSERT_TRUE(server.Start());
    CInstrument& instrument = AddInstrument("NoteProbe");
    instrument.midi.channel.Set(kChannelOmni);
    SetPattern(instrument, 0, 1000, {{0, 1, 60, 100}});
    audio.noteCapture.recording.Set(1.0F);
    CJackPeer peer(static_cast<std::size_t>(notes + 400) * 16 * kBlock);
    AudioSettings settings = Settings("JACK");
    settings.midiInDevice = "peer:midi";
    ASSERT_TRUE(output.OpenOutput(settings));
    ASSERT_TRUE(peer.RecordProgram());
    ASSERT_TRUE(TurnUntil([&] { return peer.Recorded() > 4 * kBlock; }));
    PlayPatterns();
    ASSERT_TRUE(PlayOn(0.1));
    ASSERT_GT(audio.noteCapture.latency.Get(), 0);
    EXPECT_EQ(audio.noteCapture.latency.Get(), peer.PlaybackLatency("system:playback_1"));

    std::vector<std::int64_t> sent;
    std::vector<std::int64_t> told;
    for (int note = 0; note < notes; ++note) {
        const auto key = static_cast<unsigned char>(36 + note % 48);
        ASSERT_TRUE(peer.SendMidi({0x90, key, 100}, note * 37 % kBlock));
        sent.push_back(static_cast<std::int64_t>(peer.SentAt()));
        ASSERT_TRUE(peer.SendMidi({0x80, key, 0}));
        for (EngineNotice notice; audio.Fetch(notice);) {
            if (notice.kind == EngineNotice::EKind::kNote && notice.lane > 0) told.push_back(notice.sample);
        }
    }
    ASSERT_TRUE(PlayOn(0.1));
    for (EngineNotice notice; audio.Fetch(notice);) {
        if (notice.kind == EngineNotice::EKind::kNote && notice.lane > 0) told.push_back(notice.sample);
    }
    std::vector<std::int64_t> heard;  // the note of the first step, then what was played
    const std::vector<float> sound = peer.Channel(0);
    for (std::size_t frame = 0; frame < sound.size(); ++frame) {
        if (sound[frame] > 0.001F) heard.push_back(static_cast<std::int64_t>(frame));
    }
    ASSERT_EQ(told.size(), sent.size());
    ASSERT_EQ(heard.size(), sent.size() + 1);
    for (std::size_t note = 0; note < sent.size(); ++note) {
        EXPECT_NEAR(static_cast<double>(told[note] + audio.KeyDelay() - heard[note + 1] + heard[0]), 0, 1);
        EXPECT_EQ(heard[note + 1] - sent[note], heard[1] - sent[0]);
    }
}

TEST_F(CJackOutputTest, TheServersBlockSizeIsFollowedAndWhatTheUserWiredIsKept) {
    CJackServer server(512);
    ASSERT_TRUE(server.Start());
    SetPattern(AddInstrument("KeyCounter"), 0, 16, EveryStep(16, 60));
    ASSERT_TRUE(output.OpenOutput(Settings("JACK", 2048)));
    PlayPatterns();
    ASSERT_TRUE(PlayOn(0.1));
    {
        CJackPeer peer;
        peer.SetBlockSize(128);
        ASSERT_TRUE(TurnUntil([&] { return audio.Format().blockSize == 128 && PlaysOn("JACK"); }));
        ASSERT_TRUE(PlayOn(0.1));
        // The user sends both channels to one loudspeaker.
        EXPECT_EQ(peer.Connections("QUIB Sequencer:right"), std::vector<std::string>{"system:playback_2"});
        ASSERT_TRUE(peer.Connect("QUIB Sequencer:right", "system:playback_1"));
        ASSERT_TRUE(peer.Disconnect("QUIB Sequencer:right", "system:playback_2"));
        WaitForWatches();
    }
    server.Stop();
    ASSERT_TRUE(TurnUntil([&] { return PlaysOn("Silent"); }));
    ASSERT_TRUE(server.Start());
    ASSERT_TRUE(TurnUntil([&] { return PlaysOn("JACK"); }));
    EXPECT_EQ(audio.Format().blockSize, 512);
    const CJackPeer peer;
    EXPECT_EQ(peer.Connections("QUIB Sequencer:right"), std::vector<std::string>{"system:playback_1"});
}

}  // namespace
}  // namespace quib
