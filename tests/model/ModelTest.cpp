// SPDX-License-Identifier: GPL-3.0-or-later

#include "Testing.h"
#include "model/CInstrument.h"
#include "model/MixLanes.h"

namespace quib {
namespace {

TEST(CInstrument, ANewOneIsReadyToPlayAndEmpty) {
    const CInstrument instrument;
    EXPECT_EQ(instrument.patterns.size(), 16U);
    for (const auto& pattern : instrument.patterns) EXPECT_TRUE(pattern.ForEdit()->Notes().empty());
    EXPECT_EQ(instrument.plugin.ForEdit()->plugin, nullptr);
    EXPECT_EQ(instrument.midi.channel.Get(), kChannelOff);
    EXPECT_EQ(instrument.midi.keyFrom.Get(), 0);
    EXPECT_EQ(instrument.midi.keyTo.Get(), 127);
    EXPECT_TRUE(instrument.midi.pitchBend.IsOn() && instrument.midi.modulationWheel.IsOn() &&
                instrument.midi.aftertouch.IsOn() && instrument.midi.programChange.IsOn());
    EXPECT_FLOAT_EQ(instrument.strip.level.Get(), 73.67F);
    EXPECT_FALSE(instrument.strip.mute.IsOn() || instrument.strip.eqOn.IsOn());
    const double hertz[] = {100.0, 500.0, 2000.0};
    for (int band = 0; band < kEqBandCount; ++band) {
        EXPECT_NEAR(EqFrequencyHertz(instrument.strip.eqFreq[static_cast<std::size_t>(band)].Get()), hertz[band],
                    1e-4 * hertz[band]);
    }
}

TEST(CInstrument, TheHundredAndFirstEqualiserChangeWaitsForNobody) {
    CInstrument instrument;
    for (int change = 0; change < 100; ++change) EXPECT_TRUE(UpdateEqualizer(instrument, change % 3, 44100.0));
    EXPECT_FALSE(UpdateEqualizer(instrument, 0, 44100.0));
    EqBandUpdate update;
    EXPECT_TRUE(instrument.eqPending.TryPop(update));
    EXPECT_TRUE(UpdateEqualizer(instrument, 0, 44100.0));
}

TEST(CInstrument, OnlyOneStepNumberModeIsOnAndTheLastOneCounts) {
    CInstrument instrument;
    SelectStepNumberMode(instrument, EStepNumberMode::kRandom);
    SelectStepNumberMode(instrument, EStepNumberMode::kChain);
    EXPECT_EQ(SelectedStepNumberMode(instrument), EStepNumberMode::kChain);
    EXPECT_FALSE(instrument.stepNumberModes[1].IsOn());
    instrument.stepNumberModes[2].Set(1.0F);
    EXPECT_EQ(SelectedStepNumberMode(instrument), EStepNumberMode::kHold);
}

TEST(MixLanes, AValueReachesTheSettingOfItsLaneWithinItsRange) {
    ChannelStrip strip;
    const CValue* const settings[] = {&strip.level, &strip.eqQ[1], &strip.sendLevel[0], &strip.crossfadeB};
    for (const auto& [lane, setting] :
         {std::pair{0, settings[0]}, {8, settings[1]}, {16, settings[2]}, {25, settings[3]}}) {
        EXPECT_EQ(SetMixValue(strip, lane, 1000.0F), StripSettingOf(strip, setting)) << lane;
        EXPECT_EQ(setting->Get(), MixParameters()[static_cast<std::size_t>(lane)].maximum);
        EXPECT_FALSE(SetMixValue(strip, lane, std::numeric_limits<float>::quiet_NaN()));
        EXPECT_EQ(setting->Get(), MixSetting(lane)->range.maximum);
    }
    for (int lane = 4; lane < 13; ++lane) EXPECT_EQ(MixSetting(lane)->eqBand, (lane - 4) / 3);
    EXPECT_FALSE(StripSettingOf(strip, &strip.peak));
    EXPECT_EQ(MixValueOf(1, 0.25F), -0.5F);
    EXPECT_EQ(MixValueOf(0, 0.5F), 63.5F);
    EXPECT_FALSE(MixValueOf(-1, 1.0F));
    EXPECT_FALSE(MixValueOf(24, 1.0F)) << "named, but no lane";
}

TEST(ChannelStrip, AResetLeavesTheSwitchesOfEqualiserAndInsertsAlone) {
    ChannelStrip old;
    StripValues all;
    for (const StripSetting& setting : kStripSettings) setting.member(all) = setting.range.maximum;
    SetValues(old, all);
    ChannelStrip fresh;
    KeepThroughReset(fresh, old);
    EXPECT_TRUE(fresh.eqOn.IsOn() && fresh.insertOn[0].IsOn() && fresh.insertOn[1].IsOn());
    fresh.eqOn.Set(0);
    for (CValue& on : fresh.insertOn) on.Set(0);
    const StripValues left = ValuesOf(fresh);
    for (const StripSetting& setting : kStripSettings) EXPECT_EQ(setting.member(left), setting.range.initial);
}

TEST(CPattern, FindsTheNotesOfAStepInAnyOrderAndSurvivesNonsense) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const CPattern pattern(8, {{2.5F, 1, 60, 1},
                               {2.0F, 1, 61, 1},
                               {nan, 1, 62, 1},
                               {-3.0F, 1, 63, 1},
                               {1e30F, 1, 64, 1},
                               {0.9F, 1, 65, 1},
                               {2.0F, 1, 66, 1}});
    std::vector<int> keys;
    for (const auto index : pattern.NotesOfStep(2)) keys.push_back(pattern.Notes()[index].key);
    EXPECT_EQ(keys, (std::vector<int>{61, 66, 60}));
    EXPECT_EQ(pattern.NotesOfStep(0).size(), 1U);
    EXPECT_TRUE(pattern.NotesOfStep(5).empty());
    EXPECT_EQ(pattern.Notes().size(), 7U) << "what can't play is kept all the same";
    EXPECT_EQ(CPattern(0).LoopLength(), 1);
    EXPECT_EQ(CPattern(4, {}, 99).LoopStart(), 3);
}

TEST(CEventLanes, ValuesFollowTheLineOrTheLastPoint) {
    const PointList points = {{1.0F, 0.0F}, {3.0F, 1.0F}, {3.0F, 0.5F}};
    EXPECT_FALSE(ValueAt(points, 0.5F, ELaneKind::kContinuous));
    EXPECT_FLOAT_EQ(*ValueAt(points, 2.0F, ELaneKind::kContinuous), 0.5F);
    EXPECT_EQ(*ValueAt(points, 2.0F, ELaneKind::kSwitch), 0.0F);
    EXPECT_EQ(*ValueAt(points, 3.0F, ELaneKind::kContinuous), 0.5F) << "the last of equal positions";
    EXPECT_EQ(*ValueAt(points, 99.0F, ELaneKind::kContinuous), 0.5F);
}

TEST(CEventLanes, AnEditedCopyLeavesTheOriginalAndItsOtherLanesAlone) {
    const CEventLanes first = CEventLanes().With(0, 5, {{2.0F, 1.0F}, {1.0F, 0.5F}}).With(0, 2, {{0.0F, 1.0F}});
    const CEventLanes second = first.With(0, 5, {});
    ASSERT_NE(first.Find(0, 5), nullptr);
    EXPECT_EQ(first.Find(0, 5)->front(), (Point{1.0F, 0.5F})) << "sorted by position";
    EXPECT_EQ(second.Find(0, 5), nullptr);
    EXPECT_EQ(first.Find(0, 2), second.Find(0, 2)) << "shared, not copied";
    EXPECT_EQ(first.Lanes(0)[0].index, 2);
    EXPECT_TRUE(first.With(17, 0, {{0, 0}}).Lanes(17).empty());
}

}  // namespace
}  // namespace quib
