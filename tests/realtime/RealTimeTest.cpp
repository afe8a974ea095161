// SPDX-License-Identifier: GPL-3.0-or-later
// Shows that rendering allocates, frees and locks nothing and makes no system call, with everything on
// that an engine can play. The one exception is named: a pool of several threads wakes them by futex.

#include "CTemporaryFolder.h"
#include "devices/CLame.h"
#include "engine/EngineFixture.h"
#include "platform/Clock.h"
#include "realtime/ForbiddenCalls.h"

namespace quib {
namespace {

constexpr int kInstruments = 32;
constexpr int kBlocks = 600;

class CRealTimeTest : public CEngineTest {
protected:
    // The pool's threads must be made under watch, so this comes first.
    void StartEngine(int threads) {
        systemCallsReported = PrepareWatch();
        if (!systemCallsReported) std::puts("This kernel reports no system calls: only the other calls are counted.");
        Prepare(256, threads);
    }

    std::shared_ptr<CPlugin> LoadBuiltIn(const std::string& file, ESlotKind kind) {
        std::string error;
        auto plugin = CPlugin::Load(QUIB_BIN_DIR "/" + file, kind, audio.environment, error);
        EXPECT_TRUE(plugin) << file << ": " << error;
        return plugin;
    }

    void AddVoice(int index) {
        CInstrument& instrument = AddInstrument("NoteProbe");
        if (index % 4 == 1) Put(instrument.plugin, LoadBuiltIn(kSynth, ESlotKind::kInstrument));
        Put(instrument.inserts[0], LoadPlugin("Gain", ESlotKind::kEffect));
        Put(instrument.inserts[1], LoadPlugin("Mono", ESlotKind::kEffect));
        ChannelStrip& strip = instrument.strip;
        for (CValue* const on :
             {&strip.eqOn, &strip.insertOn[0], &strip.insertOn[1], &strip.sendOn[0], &strip.sendOn[1]})
            on->Set(1.0F);
        strip.sendLevel[0].Set(100.0F);
        strip.sendLevel[1].Set(80.0F);
        instrument.swing.Set(0.4F);
        instrument.midi.channel.Set(kChannelOmni);
        instrument.keyboardOn.Set(1.0F);
        instrument.arpeggiator.on.Set(index % 3 == 0 ? 1.0F : 0.0F);
        instrument.arpeggiator.mode.Set(static_cast<float>(index % 4));
        instrument.patternUsed[1].Set(1);
        SelectStepNumberMode(instrument, index % 2 == 0 ? EStepNumberMode::kChain : EStepNumberMode::kRandom);
        AddMusic(instrument, index);
    }

    void AddMusic(CInstrument& instrument, int index) {
        SetPattern(instrument, 0, 4 + index % 5, EveryStep(4 + index % 5, 36 + index));
        SetPattern(instrument, 1, 3, EveryStep(3, 40 + index));
        Publish(instrument.playlist, Playlist{{0, 0, 1}, {1, 8, 1}});
        const PointList ramp = {{0.0F, 0.1F}, {3.0F, 0.9F}};
        CEventLanes mix;
        CEventLanes midi;
        CEventLanes parameters;
        for (const int slot : {0, 1, CEventLanes::kSongSlot}) {
            for (int lane = 1; lane < kMixLaneCount; ++lane) {
                const bool isSwitch = MixParameters()[static_cast<std::size_t>(lane)].kind == ELaneKind::kSwitch;
                if (!isSwitch) mix = mix.With(slot, lane, ramp);
            }
            for (int lane = 0; lane < kMidiLaneCount; ++lane)
                midi = midi.With(slot, lane, {{0.0F, 0.0F}, {3.0F, 127.0F}});
            parameters = parameters.With(slot, 0, {{0.0F, 0.0F}, {3.0F, 0.02F}});
        }
        Publish(instrument.mixLanes, mix);
        Publish(instrument.midiLanes, midi);
        Publish(PluginOf(instrument).lanes, parameters);
        Publish(instrument.inserts[0].ForEdit()->plugin->lanes, parameters);
        BallSound ball;
        ball.rate = 1;
        ball.channelSelector = kChannelOmni;
        ball.controllerX = 1;
        ball.horizontal.push_back({EBallTarget::kMix, 5, 0, 128, 0});
        ball.vertical.push_back({EBallTarget::kInsert1, 0, 0, 64, 0});
        Publish(instrument.ballSounds, BallSoundList{ball});
    }

    void AddMaster() {
        Put(audio.sharedEffects[0], LoadPlugin("Gain", ESlotKind::kEffect));
        Put(audio.sharedEffects[1], LoadBuiltIn(kReverb, ESlotKind::kEffect));
        Put(audio.masterInserts[0], LoadPlugin("Gain", ESlotKind::kEffect));
        audio.settings.masterInsertOn[0].Set(1.0F);
        Publish(audio.masterLanes, CEventLanes().With(CEventLanes::kSongSlot, 0, {{0.0F, 90.0F}, {9.0F, 120.0F}}));
        Publish(audio.audition, Audition{std::vector<float>(44100, 0.1F)});
        audio.recordAutomation.Set(1.0F);
        audio.noteCapture.recording.Set(1.0F);
        audio.Scope().Show(true);
    }

    // What a user and a keyboard do between two blocks; not watched.
    void Disturb(int block) {
        if (block == 0) PlayPatterns();
        if (block == kBlocks / 2) {
            audio.settings.songMode.Set(1.0F);
            Command(EngineCommand::EKind::kPlay);
        }
        const auto key = static_cast<std::uint8_t>(48 + block % 24);
        for (const int status : {0x90, 0xb0, 0xe0, 0x80})
            audio.ReceiveMidi(
                {static_cast<std::uint8_t>(status), status == 0xb0 ? std::uint8_t{1} : key, 90, Nanoseconds()});
        CInstrument& instrument = *(*audio.instruments.ForEdit())[static_cast<std::size_t>(block % kInstruments)];
        UpdateEqualizer(instrument, block % kEqBandCount, 44100.0);
        if (block % 7 == 0) SetPattern(instrument, 0, 5, EveryStep(5, 50));
        Command(EngineCommand::EKind::kMoveBall, 0, instrument.Id());
        audio.Post({EngineCommand::EKind::kPlayNote, instrument.Id(), key, 80});
        audio.Scope().Arm();
        for (EngineNotice notice; audio.Fetch(notice);) {}
        audio.Collect();
    }

    // Renders with everything between the blocks left out of the count.
    ForbiddenCalls Watch(int blocks) {
        ForbiddenCalls calls;
        for (int block = 0; block < blocks; ++block) {
            Disturb(block);
            recorder.Flush();
            BeginWatch();
            audio.RenderBlock();
            Add(calls, EndWatch());
            loudest = std::max(loudest, std::abs(audio.Master(0)[0]));
        }
        return calls;
    }
    static void Add(ForbiddenCalls& sum, const ForbiddenCalls& more) {
        sum.allocations += more.allocations;
        sum.frees += more.frees;
        sum.locks += more.locks;
        sum.wakeUps += more.wakeUps;
        sum.systemCalls += more.systemCalls;
        if (more.lastSystemCall >= 0) sum.lastSystemCall = more.lastSystemCall;
    }

    void ExpectNothing(const ForbiddenCalls& calls) {
        EXPECT_EQ(calls.allocations, 0);
        EXPECT_EQ(calls.frees, 0);
        EXPECT_EQ(calls.locks, 0);
        EXPECT_EQ(calls.systemCalls, 0) << "the last one has number " << calls.lastSystemCall;
        std::printf("%d blocks, %ld futex calls of the pool\n", kBlocks, calls.wakeUps);
        EXPECT_GT(loudest, 0.01F);
    }

    void PlayEverything(int threads) {
        StartEngine(threads);
        for (int index = 0; index < kInstruments; ++index) AddVoice(index);
        AddMaster();
        const CTemporaryFolder folder;
        ASSERT_EQ(recorder.StartRecording(folder.Path() / "take.wav", 44100), CLame::kStarted);
        audio.SetRecorder(&recorder);
        counted = Watch(kBlocks);
        EXPECT_GT(recorder.BytesWritten(), 0U);
        recorder.StopRecording();
    }

    static constexpr const char* kSynth = "PluginInstruments/QUIB synth.so";
    static constexpr const char* kReverb = "PluginEffects/QUIB reverb.so";

    CLame recorder;
    ForbiddenCalls counted;
    bool systemCallsReported = false;
    float loudest = 0.0F;
};

TEST_F(CRealTimeTest, OneThreadRendersWithoutAllocationLockOrSystemCall) {
    PlayEverything(1);
    ExpectNothing(counted);
    EXPECT_EQ(counted.wakeUps, 0);
}

TEST_F(CRealTimeTest, APoolOfThreeRendersWithoutAllocationLockOrSystemCallButItsWakeUp) {
    PlayEverything(3);
    ExpectNothing(counted);
    EXPECT_TRUE(!systemCallsReported || counted.wakeUps > 0) << "the pool was not watched";
}

// With the pool, whichever thread comes plays a plug-in: all of them are watched.
TEST_F(CRealTimeTest, APluginThatDoesWhatIsForbiddenIsCounted) {
    for (const int threads : {1, 3}) {
        StartEngine(threads);
        for (int index = 0; index < 6; ++index) AddInstrument("Trouble");
        const auto deed = [&](float parameter) {
            for (const auto& instrument : *audio.instruments.ForEdit())
                PluginOf(*instrument).SetParameter(0, parameter);
            ForbiddenCalls calls;
            for (int block = 0; block < 50; ++block) {
                BeginWatch();
                audio.RenderBlock();
                Add(calls, EndWatch());
            }
            return calls;
        };
        constexpr long kCalls = 6 * 50;
        const ForbiddenCalls allocating = deed(0.5F);
        EXPECT_EQ(allocating.allocations, kCalls);
        EXPECT_EQ(allocating.frees, kCalls);
        EXPECT_EQ(deed(0.6F).locks, kCalls);
        EXPECT_EQ(deed(0.7F).systemCalls, systemCallsReported ? kCalls : 0);
        const ForbiddenCalls good = deed(0.0F);
        EXPECT_EQ(good.allocations + good.frees + good.locks + good.systemCalls, 0);
        audio.PublishInstruments({});
        audio.Collect();
    }
}

}  // namespace
}  // namespace quib
