// SPDX-License-Identifier: GPL-3.0-or-later
// Which instrument hears which message, and what is recorded of it.
#include "engine/EngineNotices.h"

#include "EngineFixture.h"
#include "platform/Clock.h"

namespace quib {
namespace {

using Heard = std::vector<std::array<int, 3>>;

class CMidiRouterTest : public CEngineTest {
protected:
    // An instrument on that channel selector, as one of a block.
    CInstrument& Add(int selector) {
        CInstrument& instrument = AddInstrument("PatchSynth");
        instrument.midi.channel.Set(selector);
        BlockInstrument entry{};
        entry.instrument = &instrument;
        block.instruments.push_back(entry);
        return instrument;
    }
    void Send(int status, int data1, int data2, std::uint64_t time = 0) {
        const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
        router.Dispatch({byte(status), byte(data1), byte(data2), time}, ELiveSource::kMidiInput, block, transport);
    }
    // What went on to the instrument's plug-in since the last time.
    static Heard Take(CInstrument& instrument) {
        Heard heard;
        for (const LiveEvent& event : instrument.play.liveEvents.Items()) {
            heard.push_back({event.status, event.data1, event.data2});
        }
        instrument.play.liveEvents.Items().clear();
        return heard;
    }
    std::vector<int> Presets() {
        std::vector<int> presets;
        for (EngineNotice notice; notices.TryPop(notice);) {
            if (notice.kind == EngineNotice::EKind::kPresetSelected) presets.push_back(notice.value);
        }
        return presets;
    }

    PresetSelection selection;
    CValue recording;
    CBoundedQueue<EngineNotice> notices{64};
    NoteCaptureSettings captured;
    CNoteCapture capture{captured, notices};
    CLiveKeys keys{capture};
    CMidiRouter router{selection, recording, notices, keys};
    BlockContext block{};
    CTransport transport;
};

TEST_F(CMidiRouterTest, AChannelReachesItsInstrumentsAndOneWithPriorityTakesItAlone) {
    CInstrument& nine = Add(10);
    CInstrument& ten = Add(11);
    CInstrument& every = Add(kChannelOmni);
    CInstrument& none = Add(kChannelOff);
    const Heard note = {{144, 60, 100}};
    Send(0x99, 60, 100);  // channel 10
    EXPECT_EQ(Take(ten), note);
    EXPECT_EQ(Take(every), note);
    EXPECT_EQ(Take(nine), Heard());
    EXPECT_EQ(Take(none), Heard());
    ten.midi.priority.Set(1);
    nine.midi.priority.Set(1);
    Send(0x89, 60, 0);
    for (CInstrument* const heard : {&ten, &every}) EXPECT_EQ(Take(*heard), (Heard{{144, 60, 0}}));
    Send(0x99, 60, 100);
    EXPECT_EQ(Take(ten), note);
    EXPECT_EQ(Take(every), Heard());
    EXPECT_EQ(Take(nine), Heard());
    Send(0x9a, 60, 100);  // a channel of which nobody with priority hears
    EXPECT_EQ(Take(every), note);
}

TEST_F(CMidiRouterTest, KeysAreLimitedTransposedAndLearned) {
    const struct {
        int from, to, transpose, key;
        Heard heard;
    } cases[] = {
        {36, 60, 0, 35, {}},
        {36, 60, 0, 36, {{144, 36, 9}}},
        {36, 60, 0, 59, {{144, 59, 9}}},
        {36, 60, 0, 60, {}},
        {0, 127, -12, 5, {}},
        {0, 127, -12, 12, {{144, 0, 9}}},
        {0, 127, 12, 120, {}},
        {0, 127, 12, 115, {{144, 127, 9}}},
    };
    CInstrument& instrument = Add(kChannelOmni);
    for (const auto& [from, to, transpose, key, heard] : cases) {
        instrument.midi.keyFrom.Set(from);
        instrument.midi.keyTo.Set(to);
        instrument.midi.transpose.Set(transpose);
        Send(0x90, key, 9);
        EXPECT_EQ(Take(instrument), heard) << key;
    }
    instrument.midi.transpose.Set(0);
    instrument.midi.limitLearning.Set(0);
    Send(0x80, 30, 0);  // what goes up is not learned
    Send(0x90, 40, 100);
    instrument.midi.limitLearning.Set(1);
    Send(0x90, 50, 100);
    EXPECT_EQ(Take(instrument), Heard()) << "a key that was learned played";
    for (const int key : {39, 40, 49, 50}) {
        Send(0x90, key, 77);
        Send(0x80, key, 77);
    }
    EXPECT_EQ(Take(instrument), (Heard{{144, 40, 77}, {144, 40, 0}, {144, 49, 77}, {144, 49, 0}}));
}

TEST_F(CMidiRouterTest, HeldKeysAreTheUntransposedOnesAndAnArpeggiatorPlaysThemItself) {
    CInstrument& instrument = Add(kChannelOmni);
    instrument.midi.transpose.Set(12);
    instrument.keyboardOn.Set(1.0F);
    instrument.arpeggiator.on.Set(1.0F);
    for (const int key : {60, 64, 60}) Send(0x90, key, 100);
    EXPECT_EQ(instrument.play.heldKeys.Items(), (std::vector<std::int32_t>{60, 64, 60}));
    Send(0x80, 60, 0);
    EXPECT_EQ(instrument.play.heldKeys.Items(), std::vector<std::int32_t>{64});
    EXPECT_EQ(Take(instrument), Heard());
}

TEST_F(CMidiRouterTest, ControllersPassWhereTheirSwitchIsOn) {
    CInstrument& instrument = Add(kChannelOmni);
    const auto sendAll = [&] {
        Send(0xe0, 100, 64);
        Send(0xd0, 33, 5);
        Send(0xb0, 1, 70);
        Send(0xb0, 7, 70);  // a controller other than the wheel
        Send(0xa0, 60, 70);
        Send(0xf8, 0, 0);
        Send(0xe0, 100, 200);  // no data
        Send(0xb0, 200, 64);
    };
    sendAll();
    EXPECT_EQ(Take(instrument), (Heard{{224, 0, 64}, {208, 33, 0}, {176, 1, 70}}));
    for (CIntegerValue* const wheel : {&instrument.midi.pitchBend, &instrument.midi.aftertouch,
                                       &instrument.midi.modulationWheel, &instrument.midi.programChange})
        wheel->Set(0);
    recording.Set(1.0F);
    sendAll();
    Send(0xc0, 3, 0);
    EXPECT_EQ(Take(instrument), Heard());
    EngineNotice notice;
    EXPECT_FALSE(notices.TryPop(notice));
}

TEST_F(CMidiRouterTest, PresetsAreSelectedByNoteOrByProgram) {
    selection.channel.Set(3);
    selection.baseNote.Set(36);
    for (const int status : {0x91, 0x81, 0xc1, 0x92}) Send(status, 40, 100);
    EXPECT_EQ(Presets(), std::vector<int>{4});
    selection.mode.Set(1);
    for (const int status : {0x91, 0xc1, 0xc2}) Send(status, 5, 100);
    EXPECT_EQ(Presets(), std::vector<int>{5});
    selection.channel.Set(kChannelOmni);
    Send(0xcf, 7, 0);
    EXPECT_EQ(Presets(), std::vector<int>{7});
}

TEST_F(CMidiRouterTest, AControllerIsOfferedToItsLaneAtTheStepWhereItCame) {
    CInstrument& instrument = Add(kChannelOmni);
    transport.playing = true;
    transport.samplesPerStep = 4410.0F;  // 100 ms
    const std::uint64_t begun = 5'000'000'000;
    transport.stepTime = begun;
    instrument.play.currentStep = 5;
    instrument.play.currentPattern = 3;
    Send(0xb0, 1, 70, begun + 50'000'000);
    EngineNotice notice;
    EXPECT_FALSE(notices.TryPop(notice)) << "the switch is off";
    recording.Set(1.0F);
    transport.playing = false;
    Send(0xb0, 1, 70, begun + 50'000'000);
    EXPECT_FALSE(notices.TryPop(notice)) << "nothing plays";
    transport.playing = true;
    Send(0xb0, 1, 70, begun + 50'000'000);
    Send(0xd0, 33, 0, begun - 25'000'000);
    for (const auto& [lane, x, y] : {std::tuple{kModulationWheelLane, 5.5F, 70.0F}, {kAftertouchLane, 4.75F, 33.0F}}) {
        ASSERT_TRUE(notices.TryPop(notice));
        EXPECT_EQ(notice.kind, EngineNotice::EKind::kLanePoint);
        EXPECT_EQ(notice.instrument, instrument.Id());
        EXPECT_EQ(notice.pattern, 3);
        EXPECT_EQ(notice.lane, lane);
        EXPECT_NEAR(notice.x, x, 0.001F);
        EXPECT_EQ(notice.y, y);
    }
}

TEST_F(CMidiRouterTest, NoticesAreToldAndSetTheProgram) {
    CInstrument& instrument = AddInstrument("PatchSynth");
    instrument.midi.channel.Set(kChannelOmni);
    audio.recordAutomation.Set(1.0F);
    PlayPatterns();
    std::vector<int> lanes;
    for (const MidiMessage& message : {MidiMessage{0xe0, 0, 10, Nanoseconds()}, {0xc0, 2, 0, Nanoseconds()}})
        audio.ReceiveMidi(message);
    audio.RenderBlock();
    FollowNotices(audio, [&](const EngineNotice& notice) {
        if (notice.kind == EngineNotice::EKind::kLanePoint) lanes.push_back(notice.lane);
    });
    EXPECT_EQ(lanes, (std::vector<int>{kPitchBendLane, kProgramChangeLane}));
    EXPECT_EQ(PluginOf(instrument).CurrentProgram(), 2);
}

}  // namespace
}  // namespace quib
