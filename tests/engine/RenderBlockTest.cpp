// SPDX-License-Identifier: GPL-3.0-or-later
#include <numeric>

#include "EngineFixture.h"
#include "platform/Clock.h"

namespace quib {
namespace {

class CRenderBlockTest : public CEngineTest {
protected:
    void SetUp() override { Prepare(256); }

    // A constant signal of 0.25 on both sides, so that gains can be read off the master.
    CInstrument& AddConstant() {
        CInstrument& instrument = AddInstrument();
        PluginOf(instrument).SetParameter(0, 0.25F);
        instrument.strip.level.Set(63.0F);  // gain 0.25
        return instrument;
    }
    void Settle() {
        for (int block = 0; block < 200; ++block) audio.RenderBlock();
    }
    float Left() const { return audio.Master(0)[255]; }
    float Right() const { return audio.Master(1)[255]; }
};

TEST_F(CRenderBlockTest, FadersPanMuteAndCrossfaderReachTheMaster) {
    CInstrument& instrument = AddConstant();
    Settle();
    EXPECT_NEAR(Left(), 0.0625F, 1e-5F);
    instrument.strip.level.Set(127.0F);
    Settle();
    EXPECT_NEAR(Left(), 0.5F, 1e-4F);
    instrument.strip.pan.Set(0.5F);
    Settle();
    EXPECT_NEAR(Left(), 0.125F, 1e-4F);
    EXPECT_NEAR(Right(), 0.5F, 1e-4F);
    instrument.strip.pan.Set(0.0F);
    instrument.strip.crossfadeB.Set(1.0F);
    Settle();
    EXPECT_NEAR(Left(), 0.5F * 0.00390625F, 1e-5F);
    audio.settings.crossfader.Set(127.0F);
    audio.settings.masterLevel.Set(64.0F);
    Settle();
    EXPECT_NEAR(Left(), 0.125F, 1e-4F);
    instrument.strip.mute.Set(1.0F);
    Settle();
    EXPECT_NEAR(Left(), 0.0F, 1e-5F);
    EXPECT_NE(Left(), 0.0F);  // a muted strip still lets one millionth through
}

TEST_F(CRenderBlockTest, WhatHasNotRenderedYetBeginsOnItsTargets) {
    Put(audio.sharedEffects[0], LoadPlugin("Gain", ESlotKind::kEffect));
    audio.settings.masterLevel.Set(64.0F);
    CInstrument& instrument = AddConstant();
    instrument.strip.crossfadeA.Set(1.0F);
    instrument.strip.sendOn[0].Set(1.0F);
    instrument.strip.sendLevel[0].Set(127.0F);
    audio.RenderBlock();
    EXPECT_NEAR(audio.Master(0)[0], 2 * 0.0625F * 0.25F, 1e-4F);
    // Later ones too, while the others move on from where they are.
    audio.settings.masterLevel.Set(127.0F);
    instrument.strip.mute.Set(1.0F);
    AddConstant();
    audio.RenderBlock();
    EXPECT_NEAR(audio.Master(0)[0], 3 * 0.0625F * 0.25F, 1e-2F);
}

TEST_F(CRenderBlockTest, TheMasterNeverExceedsItsCeilingAndGainsNeverJump) {
    for (int count = 0; count < 8; ++count) {
        CInstrument& instrument = AddInstrument();
        PluginOf(instrument).SetParameter(0, 1.0F);
        instrument.strip.level.Set(127.0F);
    }
    audio.RenderBlock();
    float previous = audio.Master(0)[255];
    float largestJump = 0.0F;
    for (int block = 0; block < 100; ++block) {
        if (block == 50) {
            for (const auto& instrument : *audio.instruments.ForEdit()) instrument->strip.mute.Set(1.0F);
        }
        audio.RenderBlock();
        for (int frame = 0; frame < 256; ++frame) {
            ASSERT_LE(std::abs(audio.Master(0)[frame]), 0.99F);
            largestJump = std::max(largestJump, std::abs(audio.Master(0)[frame] - previous));
            previous = audio.Master(0)[frame];
        }
    }
    EXPECT_LT(largestJump, 8 * 2 * 0.005F + 0.01F);
    EXPECT_GT(audio.masterPeak[0].Get(), 0.1F);
}

TEST_F(CRenderBlockTest, InsertsWorkOutOfPlaceAndAMonoInsertHearsBothSides) {
    CInstrument& instrument = AddConstant();
    Settle();
    Put(instrument.inserts[0], LoadPlugin("Gain", ESlotKind::kEffect));
    instrument.strip.insertOn[0].Set(1.0F);
    instrument.inserts[0].ForEdit()->plugin->SetParameter(0, 1.0F);
    audio.RenderBlock();
    EXPECT_NEAR(Left(), 2 * 0.0625F, 1e-4F);
    Put(instrument.inserts[1], LoadPlugin("Mono", ESlotKind::kEffect));
    instrument.strip.insertOn[1].Set(1.0F);
    audio.RenderBlock();
    EXPECT_NEAR(Left(), 2 * 0.0625F, 1e-4F);
    EXPECT_NEAR(Right(), 2 * 0.0625F, 1e-4F);
    EXPECT_EQ(instrument.inserts[1].ForEdit()->plugin->Latency(), 64);

    Put(audio.masterInserts[0], LoadPlugin("Gain", ESlotKind::kEffect));
    audio.settings.masterInsertOn[0].Set(1.0F);
    audio.masterInserts[0].ForEdit()->plugin->SetParameter(0, 0.25F);
    audio.RenderBlock();
    EXPECT_NEAR(Left(), 0.0625F, 1e-4F);
}

TEST_F(CRenderBlockTest, ASharedEffectRunsAWhileAfterItsLastSend) {
    CInstrument& instrument = AddConstant();
    instrument.strip.mute.Set(0.0F);
    Put(audio.sharedEffects[1], LoadPlugin("Gain", ESlotKind::kEffect));
    instrument.strip.sendOn[1].Set(1.0F);
    instrument.strip.sendLevel[1].Set(127.0F);
    Settle();
    EXPECT_NEAR(Left(), 2 * 0.0625F, 1e-3F);
    instrument.strip.sendOn[1].Set(0.0F);
    // Whether the effect ran in a block shows in its parameter: gain 0 against the dry signal alone.
    int blocks = 0;
    int quiet = 0;
    for (; quiet == 0 && blocks < 400; ++blocks) {
        audio.RenderBlock();
        const float gain = instrument.play.strip.sendGain[1];
        if (gain <= 0.00002F) quiet = blocks;
    }
    ASSERT_GT(quiet, 0);
    // The length of 100 blocks of the usual size, whatever the blocks.
    const CPlugin& effect = *audio.sharedEffects[1].ForEdit()->plugin;
    int further = 1;  // the block that fell silent has run
    for (; further < 1000; ++further) {
        const_cast<float*>(effect.Output(0))[0] = 123.0F;
        audio.RenderBlock();
        if (effect.Output(0)[0] == 123.0F) break;
    }
    EXPECT_NEAR(further, 100 * 2048 / 256, 2);
}

TEST_F(CRenderBlockTest, WhatIsSilentIsSilentEnoughForEffectsToSleep) {
    constexpr float kHeardByEffects = 3e-8F;
    Put(audio.sharedEffects[0], LoadPlugin("Gain", ESlotKind::kEffect));
    for (int count = 0; count < 10; ++count) {
        CInstrument& instrument = AddInstrument();
        instrument.strip.level.Set(127.0F);
        instrument.strip.eqOn.Set(1.0F);
        for (int band = 0; band < kEqBandCount; ++band) {
            instrument.strip.eqGain[static_cast<std::size_t>(band)].Set(1.0F);
            UpdateEqualizer(instrument, band, 44100.0);
        }
        instrument.strip.sendOn[0].Set(1.0F);
        instrument.strip.sendLevel[0].Set(127.0F);
    }
    Settle();
    EXPECT_LT(std::abs(Left()), kHeardByEffects);
}

TEST_F(CRenderBlockTest, AnOutputThatIsNoNumberOrFarTooLoudSilencesItsPluginForTheBlock) {
    CInstrument& good = AddConstant();
    CInstrument& bad = AddInstrument("Trouble");
    bad.strip.level.Set(63.0F);
    Settle();
    EXPECT_NEAR(Left(), 2 * 0.0625F, 1e-4F);
    CPlugin& trouble = PluginOf(bad);
    EXPECT_FALSE(trouble.TakeFaultReport());
    for (const float trick : {0.1F, 0.2F}) {
        trouble.SetParameter(0, trick);
        Settle();
        EXPECT_NEAR(Left(), 0.0625F, 1e-4F) << trick;
    }
    EXPECT_TRUE(trouble.TakeFaultReport());
    EXPECT_FALSE(trouble.TakeFaultReport()) << "told once";
    trouble.SetParameter(0, 0.3F);
    const float before = PluginOf(good).Output(0)[0];
    Settle();
    EXPECT_NEAR(Left(), 2 * 0.0625F, 1e-4F);
    EXPECT_EQ(before, 0.25F);
}

TEST_F(CRenderBlockTest, PluginsAreToldTempoPositionAndStateOfTheTransport) {
    CInstrument& instrument = AddInstrument();
    CPlugin& plugin = PluginOf(instrument);
    plugin.SetParameter(1, 1.0F);
    Prepare(5512);
    audio.RenderBlock();
    EXPECT_FLOAT_EQ(plugin.Output(0)[0], 0.12F);
    EXPECT_EQ(plugin.Output(0)[1], 0.0F);
    PlayPatterns();
    audio.RenderBlock();
    EXPECT_EQ(plugin.Output(1)[0], 0.0F);
    EXPECT_EQ(plugin.Output(0)[1], 1.0F);
    EXPECT_EQ(plugin.Output(1)[1], 1.0F);
    for (int step = 1; step < 6; ++step) {
        audio.RenderBlock();
        EXPECT_NEAR(plugin.Output(1)[0], static_cast<float>(step) * 0.25F, 1e-5F);
        EXPECT_EQ(plugin.Output(1)[1], 0.0F);
    }
}

TEST_F(CRenderBlockTest, AutomationMovesTheMixAndThePluginWithThePattern) {
    CInstrument& instrument = AddInstrument();
    instrument.strip.level.Set(63.0F);
    SetPattern(instrument, 0, 16, {});
    Publish(instrument.mixLanes, CEventLanes().With(0, 1, {{0.0F, -1.0F}, {8.0F, 1.0F}}));
    CPlugin& plugin = PluginOf(instrument);
    Publish(plugin.lanes, CEventLanes().With(0, 0, {{4.0F, 0.5F}}));
    PlayPatterns();
    Listen(instrument, 2 * kStep);
    EXPECT_NEAR(instrument.strip.pan.Get(), -0.5F, 0.02F);
    EXPECT_EQ(plugin.Output(0)[0], 0.0F);
    Listen(instrument, 3 * kStep);
    EXPECT_EQ(plugin.Output(0)[0], 0.5F);
    Listen(instrument, 7 * kStep);
    EXPECT_EQ(instrument.strip.pan.Get(), 1.0F);
    // Between points the user's hand wins: nothing is set again until the value changes.
    instrument.strip.pan.Set(0.25F);
    Listen(instrument, 256);
    EXPECT_EQ(instrument.strip.pan.Get(), 0.25F);
}

TEST_F(CRenderBlockTest, SongAutomationNeedsSongMode) {
    CInstrument& instrument = AddInstrument();
    Publish(audio.masterLanes, CEventLanes().With(CEventLanes::kSongSlot, 0, {{0.0F, 64.0F}}));
    PlayPatterns();
    Listen(instrument, 4 * kStep);
    EXPECT_EQ(audio.settings.masterLevel.Get(), 127.0F);
    audio.settings.songMode.Set(1.0F);
    Command(EngineCommand::EKind::kPlay);
    Listen(instrument, 4 * kStep);
    EXPECT_EQ(audio.settings.masterLevel.Get(), 64.0F);
}

TEST_F(CRenderBlockTest, APointOfTheSongActsWhenItsStepSounds) {
    constexpr int kMuteLane = 2;
    CInstrument& instrument = AddConstant();
    Publish(instrument.mixLanes,
            CEventLanes().With(CEventLanes::kSongSlot, kMuteLane, {{0.0F, 0.0F}, {3.0F, 1.0F}, {4.0F, 0.0F}}));
    Command(EngineCommand::EKind::kPlay);
    std::vector<float> heard;
    while (heard.size() < 5 * kStep) {
        audio.RenderBlock();
        heard.insert(heard.end(), audio.Master(0), audio.Master(0) + 256);
    }
    EXPECT_EQ(heard[3 * kStep - 1], heard[0]);
    EXPECT_LT(heard[3 * kStep], heard[0]);
    EXPECT_LT(heard[4 * kStep - 1], 0.001F * heard[0]);
    EXPECT_GT(heard[4 * kStep], heard[4 * kStep - 1]);
}

TEST_F(CRenderBlockTest, TempoAutomationMovesTimeForwardOnceAStep) {
    constexpr int kLane = static_cast<int>(kTempoLane);
    const auto lanes =
        CEventLanes().With(CEventLanes::kSongSlot, kLane, {{0.0F, 100.0F}, {8.0F, 100.0F}, {8.0F, 240.0F}});
    Publish(audio.masterLanes, lanes);
    AddInstrument();
    Command(EngineCommand::EKind::kPlay);
    std::vector<double> tempos;
    double before = -1;
    for (int block = 0; block < 12 * kStep / 256; ++block) {
        audio.RenderBlock();
        const PlayTime& time = audio.Picture().time;
        EXPECT_GT(time.quarterNotes, before);
        before = time.quarterNotes;
        if (tempos.empty() || tempos.back() != time.tempo) tempos.push_back(time.tempo);
    }
    EXPECT_EQ(tempos, (std::vector<double>{100, 240}));
    EXPECT_EQ(audio.settings.tempo.Get(), 120.0F) << "the project's own";
}

TEST_F(CRenderBlockTest, BallsWanderOnTheirGridFromTheSeed) {
    CInstrument& instrument = AddInstrument();
    SetPattern(instrument, 0, 16, {});
    BallSound sound;
    sound.rate = 3;  // every four steps
    sound.horizontal.push_back({EBallTarget::kPlugin, 0, 0.0F, 128.0F, 0.0F});
    sound.vertical.push_back({EBallTarget::kMix, 0, 64.0F, 64.0F, 0.0F});
    Publish(instrument.ballSounds, BallSoundList{sound});
    std::vector<float> values;
    audio.Seed(5);
    PlayPatterns();
    for (int step = 0; step < 12; ++step) {
        Prepare(kStep);
        audio.RenderBlock();
        values.push_back(PluginOf(instrument).Output(0)[kStep - 1]);
    }
    CRandom random(5);
    for (int step = 0; step < 12; step += 4) {
        const float x = static_cast<float>(random.Draw()) * 128.0F / 32768.0F;
        random.Draw();
        for (int same = step; same < step + 4; ++same)
            EXPECT_NEAR(values[static_cast<std::size_t>(same)], x / 128.0F, 1e-4F);
    }
    EXPECT_NEAR(instrument.strip.level.Get(), 63.5F, 1e-3F);
}

TEST_F(CRenderBlockTest, ACommandPlacesTheBallItNamesAndNoOther) {
    CInstrument& instrument = AddInstrument();
    CInstrument& other = AddInstrument();
    const auto balls = instrument.play.balls;
    const auto beyond = static_cast<std::int32_t>(balls.size());
    for (const std::int32_t ball : {1, -1, beyond})
        audio.Post({EngineCommand::EKind::kMoveBall, instrument.Id(), ball, 12.0F, 100.0F});
    audio.RenderBlock();
    auto expected = balls;
    expected[1] = {12.0F, 100.0F};
    EXPECT_EQ(instrument.play.balls, expected);
    EXPECT_EQ(other.play.balls, balls);
}

TEST_F(CRenderBlockTest, LiveMessagesKeepTheirPlaceInTheBlock) {
    Prepare(4410);
    CInstrument& instrument = AddInstrument();
    instrument.midi.channel.Set(kChannelOmni);
    const auto send = [&](int status, int key, int ago) {
        audio.ReceiveMidi({static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(key), 100,
                           Nanoseconds() - static_cast<std::uint64_t>(ago) * 1'000'000});
    };
    send(0x99, 36, 60);
    send(0xf8, 40, 60);  // no channel message
    send(0x89, 36, 20);
    const auto heard = Listen(instrument, 4410);
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_EQ(heard[0].key, 36);
    EXPECT_NEAR(static_cast<double>(heard[0].frame), 4410 - 60 * 44.1, 400.0);
    EXPECT_FALSE(heard[1].on);
    EXPECT_NEAR(static_cast<double>(heard[1].frame - heard[0].frame), 40 * 44.1, 1.0);
}

TEST_F(CRenderBlockTest, AuditionPlaysOnlyWithTheTransportAndFromItsPlace) {
    Audition sample;
    sample.samples.assign(1000, 0.5F);
    sample.offset = -5512;  // begins one step in
    Publish(audio.audition, sample);
    Prepare(5512);
    audio.RenderBlock();
    EXPECT_EQ(audio.Master(0)[10], 0.0F);
    PlayPatterns();
    audio.RenderBlock();
    EXPECT_EQ(audio.Master(0)[5511], 0.0F);
    audio.RenderBlock();
    EXPECT_EQ(audio.Master(0)[0], 0.5F);
    EXPECT_EQ(audio.Master(0)[999], 0.5F);
}

TEST_F(CRenderBlockTest, TheScopeStartsAtARisingCrossing) {
    CScope scope;
    std::vector<float> wave(8192);
    for (std::size_t i = 0; i < wave.size(); ++i) wave[i] = std::sin(static_cast<float>(i) * 0.02F + 2.0F);
    scope.Show(true);
    scope.Arm();
    scope.Capture(wave.data(), wave.data(), 8192);
    const CScope::Picture* const picture = scope.Fetch();
    ASSERT_NE(picture, nullptr);
    EXPECT_GE(picture->left[0], 0.0F);
    EXPECT_LT(picture->left[0], 0.05F);
    EXPECT_EQ(scope.Fetch(), nullptr) << "a picture is fetched once";
}

TEST_F(CRenderBlockTest, AnUnusableFormatIsRefusedAndTheOldOneStays) {
    EXPECT_THROW(Prepare(0), std::invalid_argument);
    EXPECT_THROW(Prepare(16385), std::invalid_argument);
    EXPECT_THROW(Prepare(256, 0), std::invalid_argument);
    EXPECT_EQ(audio.Format().blockSize, 256);
}

}  // namespace
}  // namespace quib
