// SPDX-License-Identifier: GPL-3.0-or-later
#include "EngineFixture.h"

namespace quib {
namespace {

// A song in which everything moves that can: lanes of every family, balls, tempo, crossfader, inserts, sends.
class CMovingSong : public CEngineTest {
public:
    std::vector<float> Render(int blockSize, int steps) {
        Prepare(blockSize);
        Command(EngineCommand::EKind::kStopAt, steps);
        Command(EngineCommand::EKind::kPlay);
        std::vector<float> samples;
        const auto enough = static_cast<std::size_t>((steps + 2) * kStep);
        while (samples.size() < enough) {
            audio.RenderBlock();
            samples.insert(samples.end(), audio.Master(0), audio.Master(0) + blockSize);
        }
        samples.resize(enough);
        return samples;
    }

    CMovingSong() {
        for (const float pitch : {0.1F, 0.2F}) AddVoice(pitch);
        Put(audio.sharedEffects[0], LoadPlugin("Gain", ESlotKind::kEffect));
        Put(audio.masterInserts[0], LoadPlugin("Gain", ESlotKind::kEffect));
        Publish(audio.sharedEffects[0].ForEdit()->plugin->lanes, Ramp(0, 0.0F, 1.0F));
        Publish(audio.masterInserts[0].ForEdit()->plugin->lanes, Ramp(0, 0.3F, 0.6F));
        Publish(audio.masterLanes, CEventLanes()
                                       .With(kSong, 0, {{0.0F, 127.0F}, {12.0F, 90.0F}})
                                       .With(kSong, 1, {{2.0F, 0.0F}, {9.0F, 127.0F}})
                                       .With(kSong, 2, {{0.0F, 0.0F}, {5.0F, 1.0F}, {10.0F, 0.0F}})
                                       .With(kSong, 4, {{0.0F, 130.0F}, {6.5F, 90.0F}, {8.0F, 180.0F}}));
    }

private:
    static constexpr int kSong = CEventLanes::kSongSlot;

    static CEventLanes Ramp(int lane, float from, float to) {
        return CEventLanes().With(kSong, lane, {{0.0F, from}, {11.3F, to}});
    }

    void AddVoice(float level) {
        CInstrument& instrument = AddInstrument();
        instrument.strip.crossfadeA.Set(level > 0.15F ? 1.0F : 0.0F);
        instrument.strip.eqGain[1].Set(0.5F);
        UpdateEqualizer(instrument, 1, 44100.0);
        Put(instrument.inserts[1], LoadPlugin("Mono", ESlotKind::kEffect));
        Publish(PluginOf(instrument).lanes, Ramp(0, level, 0.4F));
        SetPattern(instrument, 0, 8, {{0.0F, 1.0F, 60, 100}, {2.3F, 1.0F, 64, 100}, {5.0F, 1.0F, 67, 100}});
        Publish(instrument.playlist, Playlist{{0, 0, 1}});
        Publish(instrument.mixLanes, Ramp(1, -1.0F, 1.0F)
                                         .With(kSong, 2, {{3.0F, 1.0F}, {3.7F, 0.0F}})
                                         .With(kSong, 3, {{1.2F, 1.0F}, {4.1F, 0.0F}, {7.0F, 1.0F}})
                                         .With(kSong, 14, {{6.0F, 1.0F}, {8.2F, 0.0F}})
                                         .With(0, 7, {{0.0F, 0.2F}, {6.0F, 0.8F}})
                                         .With(0, 15, {{1.0F, 1.0F}, {3.0F, 0.0F}})
                                         .With(0, 16, {{0.0F, 100.0F}, {6.0F, 127.0F}}));
        BallSound sound;
        sound.rate = 2;
        sound.vertical.push_back({EBallTarget::kMix, 0, 64.0F, 110.0F, 0.0F});
        Publish(instrument.ballSounds, BallSoundList{sound});
    }

    void TestBody() override {}
};

TEST(CBlockGridTest, WhatIsAutomatedSoundsTheSameForEveryBlockSize) {
    constexpr int kSteps = 14;
    const std::vector<float> expected = CMovingSong().Render(16, kSteps);
    const auto [low, high] = std::minmax_element(expected.begin(), expected.end());
    EXPECT_GT(*high - *low, 0.3F);
    for (const int blockSize : {37, 256, 1000, 16384}) {
        const std::vector<float> samples = CMovingSong().Render(blockSize, kSteps);
        float worst = 0;
        std::size_t first = 0;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const float difference = std::abs(samples[i] - expected[i]);
            if (difference > 1e-6F && worst <= 1e-6F) first = i;
            worst = std::max(worst, difference);
        }
        EXPECT_LE(worst, 1e-6F) << "block size " << blockSize << " from frame " << first;
    }
}

}  // namespace
}  // namespace quib
