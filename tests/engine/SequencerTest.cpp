// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CSequencer.h"

#include "EngineFixture.h"
#include "model/PlaylistSpans.h"

namespace quib {
namespace {

class CSequencerTest : public CEngineTest {
protected:
    void SetUp() override { Prepare(kStep / 8); }
};

TEST_F(CSequencerTest, NotesFallOnTheirSamplesWithSwingAndEndAfterTheirLength) {
    CInstrument& instrument = AddInstrument();
    instrument.swing.Set(0.5F);
    SetPattern(instrument, 0, 16,
               {{0.0F, 1.0F, 60, 100},     // plain
                {3.25F, 0.5F, 61, 100},    // odd step: a quarter in, half a step late
                {2.0F, 0.0F, 62, 100},     // no length: ends one sample later
                {2.0F, 1.0F, 63, 0},       // velocity 0: never played
                {1.0F, 40.0F, 64, 100}});  // longer than start + loop length: cut to that
    PlayPatterns();
    const auto heard = Listen(instrument, 19 * kStep);
    const std::vector<HeardNote> expected = {
        {0, 60, true},
        {kStep, 60, false},
        {kStep + 2756, 64, true},
        {2 * kStep, 62, true},
        {2 * kStep + 1, 62, false},
        {3 * kStep + 1378 + 2756, 61, true},
        {3 * kStep + 1378 + 2756 + 2756, 61, false},
        {16 * kStep, 60, true},
        {17 * kStep, 60, false},
        {17 * kStep + 2756, 64, false},  // where the key is struck anew
        {17 * kStep + 2756, 64, true},
        {18 * kStep, 62, true},
        {18 * kStep + 1, 62, false},
    };
    EXPECT_EQ(heard, expected);
}

TEST_F(CSequencerTest, ANoteEndsWhereItsKeyIsStruckAgain) {
    CInstrument& instrument = AddInstrument();
    instrument.swing.Set(0.5F);
    // Legato over a late step, and a short note within a long one.
    SetPattern(instrument, 0, 16,
               {{1.0F, 1.0F, 60, 100}, {2.0F, 1.0F, 60, 100}, {4.0F, 4.0F, 62, 100}, {6.0F, 1.0F, 62, 100}});
    PlayPatterns();
    EXPECT_EQ(Listen(instrument, 10 * kStep), (std::vector<HeardNote>{{kStep + 2756, 60, true},
                                                                      {2 * kStep, 60, false},
                                                                      {2 * kStep, 60, true},
                                                                      {3 * kStep, 60, false},
                                                                      {4 * kStep, 62, true},
                                                                      {6 * kStep, 62, false},
                                                                      {6 * kStep, 62, true},
                                                                      {7 * kStep, 62, false}}));
}

TEST_F(CSequencerTest, ChainAndRandomFollowTheUsedPatterns) {
    CInstrument& instrument = AddInstrument();
    for (const int pattern : {0, 3, 9}) {
        SetPattern(instrument, pattern, 1, EveryStep(1, 60 + pattern));
        instrument.patternUsed[static_cast<std::size_t>(pattern)].Set(1);
    }
    SelectStepNumberMode(instrument, EStepNumberMode::kChain);
    PlayPatterns();
    EXPECT_EQ(Keys(instrument, 6 * kStep), (std::vector<int>{60, 63, 69, 60, 63, 69}));

    SelectStepNumberMode(instrument, EStepNumberMode::kRandom);
    std::map<int, int> counts;
    for (const int key : Keys(instrument, 400 * kStep)) ++counts[key];
    EXPECT_EQ(counts.size(), 3U);
    EXPECT_GT(counts[63], 20);
    EXPECT_GT(counts[69], 20);
}

TEST_F(CSequencerTest, RandomWithOneUsedPatternStaysOnItOrRepeats) {
    CInstrument& instrument = AddInstrument();
    SetPattern(instrument, 0, 1, EveryStep(1, 60));
    SetPattern(instrument, 15, 1, EveryStep(1, 75));
    instrument.patternUsed[15].Set(1);
    SelectStepNumberMode(instrument, EStepNumberMode::kRandom);
    PlayPatterns();
    const auto keys = Keys(instrument, 200 * kStep);
    const auto firstHit = std::find(keys.begin(), keys.end(), 75);
    ASSERT_NE(firstHit, keys.end());
    EXPECT_TRUE(std::all_of(keys.begin(), firstHit, [](int key) { return key == 60; }));
    EXPECT_TRUE(std::all_of(firstHit, keys.end(), [](int key) { return key == 75; }));
}

TEST_F(CSequencerTest, AQueuedPatternWaitsForTheEndAndGoesBeforeChain) {
    CInstrument& instrument = AddInstrument();
    SetPattern(instrument, 0, 4, EveryStep(4, 60));
    SetPattern(instrument, 1, 2, EveryStep(2, 61));
    SetPattern(instrument, 5, 2, EveryStep(2, 65));
    instrument.patternUsed[0].Set(1);
    instrument.patternUsed[1].Set(1);
    SelectStepNumberMode(instrument, EStepNumberMode::kChain);
    PlayPatterns();
    Listen(instrument, kStep);
    Command(EngineCommand::EKind::kSelectPattern, 5, instrument.Id());
    EXPECT_EQ(Keys(instrument, 7 * kStep), (std::vector<int>{60, 60, 60, 65, 65, 60, 60}));
}

TEST_F(CSequencerTest, PatternsThatAreLaunchedBeginTogetherAtTheBeatOrTheBar) {
    CInstrument& shortOne = AddInstrument();
    CInstrument& longOne = AddInstrument();
    for (CInstrument* const one : {&shortOne, &longOne}) {
        SetPattern(*one, 0, one == &shortOne ? 3 : 64, EveryStep(64, 60));
        SetPattern(*one, 1, 16, {{0.0F, 0.5F, 71, 100}, {5.0F, 0.5F, 75, 100}});
    }
    const auto choose = [&](int pattern) {
        for (const CInstrument* const one : {&shortOne, &longOne}) {
            Command(EngineCommand::EKind::kSelectPattern, pattern, one->Id());
        }
    };
    // Where key 71 begins first on each of both, in samples from here on.
    const auto begins = [&](int steps) {
        std::array<std::int64_t, 2> first{-1, -1};
        const CPlugin& other = PluginOf(longOne);
        const std::int64_t start = position;
        for (int block = 0; block < steps * 8; ++block) {
            const std::int64_t now = position;
            for (const HeardNote& note : Listen(shortOne, kStep / 8)) {
                if (note.on && note.key == 71 && first[0] < 0) first[0] = note.frame - start;
            }
            for (int frame = 0; frame < kStep / 8; ++frame) {
                const bool struck = static_cast<int>(other.Output(0)[frame] * 128.0F) == 71;
                if (struck && first[1] < 0) first[1] = now + frame - start;
            }
        }
        return first;
    };
    Prepare(kStep / 8);
    const struct {
        ELaunch launch;
        int begin;  // step from where it was chosen
    } cases[] = {{ELaunch::kBeat, 2}, {ELaunch::kBar, 14}};
    for (const auto& one : cases) {
        audio.settings.launch.Set(static_cast<int>(one.launch));
        Command(EngineCommand::EKind::kStop);
        choose(0);
        PlayPatterns();
        Listen(shortOne, kStep * 2);
        choose(1);
        choose(0);
        choose(1);
        EXPECT_EQ(audio.Picture().instruments[1].nextPattern, -1);
        const auto first = begins(17);
        EXPECT_EQ(first[0], first[1]) << "on one sample";
        EXPECT_NEAR(static_cast<double>(first[0]) / kStep, one.begin, 0.01);
        choose(0);
        Command(EngineCommand::EKind::kHoldLaunch, 1);
        Listen(shortOne, kStep * 16);
        EXPECT_EQ(audio.Picture().instruments[1].nextPattern, 0) << "until all have been chosen";
        Command(EngineCommand::EKind::kHoldLaunch, 0);
        choose(1);
        audio.RenderBlock();
        EXPECT_EQ(audio.Picture().instruments[0].nextPattern, -1) << "the one that plays takes the waiting one back";
        position += audio.Format().blockSize;
    }
    audio.settings.launch.Set(static_cast<int>(ELaunch::kPatternEnd));
    choose(0);
    Command(EngineCommand::EKind::kStop);
    PlayPatterns();
    Listen(shortOne, kStep * 2);
    choose(1);
    const auto first = begins(66);
    EXPECT_NEAR(static_cast<double>(first[0]) / kStep, 1, 0.01);
    EXPECT_NEAR(static_cast<double>(first[1]) / kStep, 62, 0.01);
}

TEST_F(CSequencerTest, ARestartWaitsForTheBeat) {
    CInstrument& leader = AddInstrument();
    CInstrument& instrument = AddInstrument();
    SetPattern(leader, 0, 16, {});
    SetPattern(instrument, 0, 16, {{0.0F, 0.5F, 40, 100}, {9.0F, 0.5F, 49, 100}});
    PlayPatterns();
    EXPECT_EQ(Keys(instrument, 2 * kStep), (std::vector<int>{40}));
    Command(EngineCommand::EKind::kStartPattern, 9, instrument.Id());
    const auto heard = Listen(instrument, 4 * kStep);
    ASSERT_FALSE(heard.empty());
    EXPECT_EQ(heard.front(), (HeardNote{4 * kStep, 49, true}));
}

TEST_F(CSequencerTest, SynchroBringsShortPatternsBackToTheLongest) {
    CInstrument& shortOne = AddInstrument();
    CInstrument& longOne = AddInstrument();
    CInstrument& freeOne = AddInstrument();
    SetPattern(shortOne, 0, 3, {{0.0F, 0.5F, 60, 100}});
    SetPattern(longOne, 0, 8, {});
    SetPattern(freeOne, 0, 3, {{0.0F, 0.5F, 60, 100}});
    shortOne.strip.synchro.Set(1.0F);
    longOne.strip.synchro.Set(1.0F);
    PlayPatterns();
    std::vector<std::int64_t> synchronised;
    std::vector<std::int64_t> alone;
    const CPlugin& freePlugin = PluginOf(freeOne);
    for (int block = 0; block < 17 * 8; ++block) {
        const std::int64_t start = position;
        for (const HeardNote& note : Listen(shortOne, kStep / 8)) {
            if (note.on) synchronised.push_back(note.frame / kStep);
        }
        for (int frame = 0; frame < kStep / 8; ++frame) {
            if (freePlugin.Output(0)[frame] != 0.0F) alone.push_back((start + frame) / kStep);
        }
    }
    EXPECT_EQ(synchronised, (std::vector<std::int64_t>{0, 3, 6, 8, 11, 14, 16}));
    EXPECT_EQ(alone, (std::vector<std::int64_t>{0, 3, 6, 9, 12, 15}));
}

// What spans draw is what the engine plays, wherever it was sent. Entries without a pattern or a place, lengths
// of 1 and equal starts are among them.
TEST_F(CSequencerTest, EveryStepOfASongIsWhatItsSpansSay) {
    Prepare(662);
    audio.settings.tempo.Set(1000.0F);
    CInstrument& instrument = AddInstrument();
    std::minstd_rand random(11);
    const auto draw = [&](int from, int to) { return std::uniform_int_distribution(from, to)(random); };
    const char* const count = std::getenv("QUIB_PLAYLISTS");
    for (int round = 0; round < (count != nullptr ? std::atoi(count) : 1000); ++round) {
        for (int pattern = 0; pattern < 4; ++pattern) SetPattern(instrument, pattern, draw(1, 9), {});
        Playlist playlist;
        for (int entry = draw(0, 6); entry > 0; --entry) playlist.push_back({draw(-1, 3), draw(-2, 30), draw(0, 1)});
        Publish(instrument.playlist, playlist);
        const auto spans = PlaylistSpans(playlist, PatternLengthsForEdit(instrument));
        for (int seek = 0; seek < 3; ++seek) {
            Command(EngineCommand::EKind::kLocate, draw(0, 45));
            if (seek == 0) Command(EngineCommand::EKind::kPlay);
            for (int steps = draw(1, 12); steps > 0; --steps) {
                audio.RenderBlock();
                const PlayPicture& picture = audio.Picture();
                const int step = picture.soundingStep;
                const auto span = std::find_if(spans.begin(), spans.end(), [&](const PlaylistSpan& one) {
                    return one.first <= step && step < one.end;
                });
                const InstrumentPicture& played = picture.instruments[0];
                if (span == spans.end()) {
                    ASSERT_EQ(played.step, -1) << "round " << round << " step " << step;
                } else {
                    const int length = PatternLengthsForEdit(instrument)[static_cast<std::size_t>(span->pattern)];
                    ASSERT_EQ(std::pair(played.pattern, played.step),
                              std::pair(span->pattern, (step - span->origin) % length))
                        << "round " << round << " step " << step;
                }
            }
        }
        audio.Collect();
    }
}

TEST_F(CSequencerTest, TheLoopRegionRepeatsItsStepsAndEndsSoundingNotes) {
    CInstrument& instrument = AddInstrument();
    std::vector<Note> notes;
    for (int step = 0; step < 16; ++step) notes.push_back({static_cast<float>(step), 0.5F, 40 + step, 100});
    notes.push_back({6.5F, 20.0F, 100, 100});
    SetPattern(instrument, 0, 16, notes);
    Publish(instrument.playlist, Playlist{{0, 0, 1}});
    audio.settings.loopOn.Set(1.0F);
    audio.settings.loopStart.Set(4);
    audio.settings.loopEnd.Set(8);
    Command(EngineCommand::EKind::kPlay);
    std::vector<int> keys;
    std::vector<std::int64_t> ends;
    for (const HeardNote& note : Listen(instrument, 13 * kStep)) {
        if (note.on && note.key < 100) keys.push_back(note.key);
        if (!note.on && note.key == 100) ends.push_back(note.frame);
    }
    EXPECT_EQ(keys, (std::vector<int>{40, 41, 42, 43, 44, 45, 46, 47, 44, 45, 46, 47, 44}));
    EXPECT_EQ(ends, (std::vector<std::int64_t>{8 * kStep, 12 * kStep}));
}

TEST_F(CSequencerTest, ALoopJumpIsToldAndAnEmptyLoopIsIgnored) {
    Prepare(kStep);
    CInstrument& instrument = AddInstrument();
    SetPattern(instrument, 0, 16, EveryStep(16, 60));
    audio.settings.loopOn.Set(1.0F);
    Command(EngineCommand::EKind::kPlay);
    for (const auto& [end, jumps] : {std::pair{0, std::set<int>{0}}, std::pair{6, std::set<int>{2, 4, 6}}}) {
        audio.settings.loopStart.Set(std::max(0, end - 2));
        audio.settings.loopEnd.Set(end);
        std::set<int> told;
        for (int step = 0; step < (end == 0 ? 4 : 7); ++step) {
            audio.RenderBlock();
            if (audio.Picture().time.transportChanged) told.insert(step);
        }
        EXPECT_EQ(told, jumps) << "end " << end;
    }
    EXPECT_EQ(audio.Picture().soundingStep, 4);
}

TEST_F(CSequencerTest, AnInstrumentThatComesBackIsInPhase) {
    CInstrument& steady = AddInstrument();
    SetPattern(steady, 0, 16, {});
    CInstrument& instrument = AddInstrument();
    std::vector<Note> notes;
    for (int step = 0; step < 7; ++step) notes.push_back({static_cast<float>(step), 3.0F, 60 + step, 100});
    SetPattern(instrument, 0, 7, notes);
    PlayPatterns();
    Listen(instrument, 3 * kStep);
    const InstrumentList all = *audio.instruments.ForEdit();
    audio.PublishInstruments({all[0]});
    Listen(steady, 10 * kStep);
    audio.PublishInstruments(all);
    const auto heard = Listen(instrument, 2 * kStep);
    std::vector<HeardNote> begun, ended;
    for (const HeardNote& note : heard) (note.on ? begun : ended).push_back(note);
    EXPECT_EQ(begun, (std::vector<HeardNote>{{13 * kStep, 66, true}, {14 * kStep, 60, true}}));
    EXPECT_EQ(ended, (std::vector<HeardNote>{{13 * kStep, 60 + 61 + 62, false}})) << "all three at once";
}

TEST_F(CSequencerTest, OutsideSongModeTheSongStandsStillAndTheLoopHasNoEffect) {
    CInstrument& instrument = AddInstrument();
    SetPattern(instrument, 0, 16, EveryStep(16, 60));
    audio.settings.loopOn.Set(1.0F);
    audio.settings.loopEnd.Set(3);
    PlayPatterns();
    EXPECT_EQ(Keys(instrument, 10 * kStep).size(), 10U);
    EXPECT_EQ(audio.Picture().globalStep, 0);
    EXPECT_EQ(audio.Picture().instruments[0].step, 9);
}

TEST_F(CSequencerTest, StopEndsEveryNoteWithinOneBlockAndKeepsTheRestSilent) {
    CInstrument& instrument = AddInstrument();
    SetPattern(instrument, 0, 16, {{0.0F, 15.0F, 60, 100}, {0.9F, 1.0F, 61, 100}});
    PlayPatterns();
    EXPECT_EQ(Listen(instrument, 1000).size(), 1U);
    Command(EngineCommand::EKind::kStop);
    const std::int64_t stopped = position;
    EXPECT_EQ(Listen(instrument, 20 * kStep), (std::vector<HeardNote>{{stopped, 60, false}}));
}

TEST_F(CSequencerTest, EditingAPatternLeavesSoundingNotesToTheirEnd) {
    CInstrument& instrument = AddInstrument();
    SetPattern(instrument, 0, 16, {{0.0F, 2.0F, 60, 100}});
    PlayPatterns();
    Listen(instrument, 1);
    SetPattern(instrument, 0, 16, {});
    EXPECT_EQ(Listen(instrument, 4 * kStep), (std::vector<HeardNote>{{2 * kStep, 60, false}}));
}

// --- Arpeggiator ---------------------------------------------------------------------------------------

class CArpeggiatorTest : public CSequencerTest {
protected:
    CInstrument& AddArpeggiator(std::vector<int> held, EArpeggiatorOrder order) {
        CInstrument& instrument = AddInstrument();
        SetPattern(instrument, 0, 16, {});
        instrument.arpeggiator.on.Set(1.0F);
        instrument.arpeggiator.mode.Set(static_cast<float>(order));
        for (const int key : held) instrument.play.heldKeys.Add(key);
        return instrument;
    }
};

TEST_F(CArpeggiatorTest, OrdersWalkTheHeldKeys) {
    struct Case {
        std::vector<int> held;
        EArpeggiatorOrder order;
        float extensionMode;
        float extension;
        std::vector<int> keys;
    };
    const std::vector<Case> cases = {
        {{60, 64, 67}, EArpeggiatorOrder::kUpward, 1, 0, {60, 64, 67, 60, 64, 67, 60, 64}},
        {{60, 64, 67}, EArpeggiatorOrder::kDownward, 1, 0, {67, 64, 60, 67, 64, 60, 67, 64}},
        {{60, 64, 67}, EArpeggiatorOrder::kUpAndDown, 1, 0, {60, 64, 67, 67, 64, 60, 60, 64}},
        {{60, 64, 67}, EArpeggiatorOrder::kUpward, 0, 1, {60, 72, 64, 76, 67, 79, 60, 72}},
        {{60, 64, 67}, EArpeggiatorOrder::kUpward, 1, 1, {60, 64, 67, 72, 76, 79, 60, 64}},
        {{100, 120}, EArpeggiatorOrder::kUpward, 0, 1, {100, 112, 120, 100, 112, 120}},  // above the keyboard: rests
    };
    for (const Case& one : cases) {
        CInstrument& instrument = AddArpeggiator(one.held, one.order);
        instrument.arpeggiator.interval.Set(12.0F);
        instrument.arpeggiator.extMode.Set(one.extensionMode);
        instrument.arpeggiator.ext.Set(one.extension);
        position = 0;
        PlayPatterns();
        EXPECT_EQ(Keys(instrument, 8 * kStep), one.keys)
            << "order " << static_cast<int>(one.order) << " extension mode " << one.extensionMode << " from "
            << one.held[0];
        audio.PublishInstruments({});
    }
}

TEST_F(CArpeggiatorTest, RandomOrderLeavesHolesAndRepeatsFromItsSeed) {
    std::vector<std::vector<int>> runs;
    for (int run = 0; run < 2; ++run) {
        audio.Seed(7);
        CInstrument& instrument = AddArpeggiator({60, 64}, EArpeggiatorOrder::kRandom);
        instrument.arpeggiator.hole.Set(2.0F);
        PlayPatterns();
        runs.push_back(Keys(instrument, 400 * kStep));
        audio.PublishInstruments({});
    }
    EXPECT_EQ(runs[0], runs[1]);
    EXPECT_GT(runs[0].size(), 150U);  // half of 400 on the average
    EXPECT_LT(runs[0].size(), 250U);
}

TEST_F(CArpeggiatorTest, RateAndGateSetTheGrid) {
    CInstrument& instrument = AddArpeggiator({60}, EArpeggiatorOrder::kUpward);
    instrument.arpeggiator.extMode.Set(1.0F);
    instrument.arpeggiator.tempo.Set(1.0F);
    instrument.arpeggiator.gateTime.Set(2.0F);
    PlayPatterns();
    EXPECT_EQ(Listen(instrument, 4 * kStep),
              (std::vector<HeardNote>{
                  {0, 60, true}, {kStep / 4, 60, false}, {2 * kStep, 60, true}, {2 * kStep + kStep / 4, 60, false}}));
}

}  // namespace
}  // namespace quib
