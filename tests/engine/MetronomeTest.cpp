// SPDX-License-Identifier: GPL-3.0-or-later
// Clicks on the beats and before a recording.
#include "engine/CMetronome.h"

#include "EngineFixture.h"

namespace quib {
namespace {

class CListener final : public CBlockRecorder {
public:
    bool IsRecording() const noexcept override { return true; }
    void PushBlock(std::span<const std::int16_t> frames) noexcept override {
        blocks += 1;
        for (const std::int16_t sample : frames) heard = heard || sample != 0;
    }
    int blocks = 0;
    bool heard = false;
};

class CMetronomeTest : public CEngineTest {
protected:
    static constexpr int kBeat = 4 * kStep;

    std::vector<float> Hear(int blockSize, int frames) {
        std::vector<float> heard;
        for (int done = 0; done < frames; done += blockSize) {
            audio.RenderBlock();
            heard.insert(heard.end(), audio.Master(0), audio.Master(0) + blockSize);
        }
        heard.resize(static_cast<std::size_t>(frames));
        return heard;
    }
    // Where it becomes loud again after a silence; the first sample of a click is 0.
    static std::vector<int> Clicks(const std::vector<float>& sound) {
        std::vector<int> clicks;
        int silent = 1000;
        for (std::size_t frame = 0; frame < sound.size(); ++frame) {
            if (sound[frame] != 0.0F && silent >= 1000) clicks.push_back(static_cast<int>(frame) - 1);
            silent = sound[frame] == 0.0F ? silent + 1 : 0;
        }
        return clicks;
    }
    static int ZeroCrossings(const std::vector<float>& sound, int from) {
        int crossings = 0;
        for (auto frame = static_cast<std::size_t>(from); frame < static_cast<std::size_t>(from) + 1000; ++frame)
            crossings += (sound[frame] < 0) != (sound[frame + 1] < 0) ? 1 : 0;
        return crossings;
    }
};

TEST_F(CMetronomeTest, ClicksFallOnTheBeatsForEveryBlockAndNeverIntoARecording) {
    CListener recorder;
    audio.SetRecorder(&recorder);
    audio.metronome.on.Set(1.0F);
    audio.settings.beatsPerBar.Set(3);
    std::vector<float> first;
    for (const int block : {64, 1000, 4096}) {
        Prepare(block);
        PlayPatterns();
        const std::vector<float> sound = Hear(block, 7 * kBeat);
        EXPECT_EQ(Clicks(sound), (std::vector<int>{0, kBeat, 2 * kBeat, 3 * kBeat, 4 * kBeat, 5 * kBeat, 6 * kBeat}));
        EXPECT_GT(ZeroCrossings(sound, 3 * kBeat), ZeroCrossings(sound, kBeat) + 10) << "the bar is accented";
        EXPECT_EQ(ZeroCrossings(sound, 2 * kBeat), ZeroCrossings(sound, kBeat));
        if (first.empty()) first = sound;
        EXPECT_EQ(first, sound);
        Command(EngineCommand::EKind::kStop);
        Hear(block, kBeat);
    }
    EXPECT_GT(recorder.blocks, 100);
    EXPECT_FALSE(recorder.heard);
    audio.SetRecorder(nullptr);
}

TEST_F(CMetronomeTest, ARecordingOfNotesIsCountedIn) {
    Prepare(100);
    CInstrument& instrument = AddInstrument();
    SetPattern(instrument, 0, 16, {{0, 1, 60, 100}});
    audio.metronome.countIn.Set(1);
    PlayPatterns();
    EXPECT_EQ(Listen(instrument, 1000).front(), (HeardNote{0, 60, true})) << "nothing is recorded";
    Command(EngineCommand::EKind::kStop);
    Listen(instrument, 1000);
    audio.noteCapture.recording.Set(1.0F);
    const std::int64_t begun = position;
    PlayPatterns();
    EXPECT_TRUE(Listen(instrument, kBeat + 200).empty());
    EXPECT_EQ(audio.Picture().beatsToStart, 3);
    EXPECT_FALSE(audio.Picture().playing);
    const std::vector<HeardNote> heard = Listen(instrument, 3 * kBeat + 1000);
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_EQ(heard[0].frame, begun + 4 * kBeat);
    EXPECT_EQ(audio.Picture().beatsToStart, 0);
    PlayPatterns();
    Listen(instrument, kBeat);
    Command(EngineCommand::EKind::kStop);
    EXPECT_TRUE(Keys(instrument, 4 * kBeat).empty()) << "Stop ends the counting";
}

TEST_F(CMetronomeTest, ANoteStruckALittleBeforeTheFirstIsOnIt) {
    Prepare(100);
    CInstrument& instrument = AddInstrument();
    instrument.midi.channel.Set(kChannelOmni);
    audio.metronome.countIn.Set(1);
    audio.noteCapture.recording.Set(1.0F);
    audio.noteCapture.latency.Set(300);
    PlayPatterns();
    // Frames of what is heard; a block is heard 300 frames after it was asked for.
    struct Played {
        int frame, key, velocity;
    };
    constexpr int kStart = 4 * kBeat;
    std::vector<Played> hands = {{kStart - kBeat, 50, 90},      {kStart - kBeat + 90, 50, 0}, {kStart - 4000, 60, 90},
                                 {kStart - 1000, 60, 0},        {kStart - 70, 62, 80},        {kStart + 500, 62, 0},
                                 {kStart + kStep + 30, 64, 70}, {kStart + 2 * kStep, 64, 0}};
    std::vector<EngineNotice> told;
    constexpr double kNanoseconds = 1e9 / 44100;
    for (int frame = 0; frame < kStart + 4 * kStep; frame += 100) {
        while (!hands.empty() && hands.front().frame + 300 < frame) {
            const Played hand = hands.front();
            hands.erase(hands.begin());
            audio.ReceiveMidi({0x90, static_cast<std::uint8_t>(hand.key), static_cast<std::uint8_t>(hand.velocity),
                               1'000'000'000 + static_cast<std::uint64_t>((hand.frame + 300) * kNanoseconds)});
        }
        audio.RenderBlock(1'000'000'000 + static_cast<std::uint64_t>(frame * kNanoseconds));
        for (EngineNotice notice; audio.Fetch(notice);) told.push_back(notice);
    }
    const struct {
        int key, velocity, sample;
    } expected[] = {{60, 90, 0}, {60, 0, 3000}, {62, 80, 0}, {62, 0, 500}, {64, 70, kStep + 30}, {64, 0, 2 * kStep}};
    ASSERT_EQ(told.size(), std::size(expected));
    for (std::size_t index = 0; index < told.size(); ++index) {
        EXPECT_EQ(told[index].value, expected[index].key);
        EXPECT_EQ(told[index].lane, expected[index].velocity);
        EXPECT_NEAR(static_cast<double>(told[index].sample), expected[index].sample, 1);
        if (told[index].lane == 0) continue;
        EXPECT_NEAR(told[index].x * kStep, expected[index].sample, 1);
    }
}

}  // namespace
}  // namespace quib
