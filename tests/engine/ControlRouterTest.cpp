// SPDX-License-Identifier: GPL-3.0-or-later
// What the engine lets MIDI controllers move, and that a flood of them harms nothing while the table is edited.
#include <thread>

#include "EngineFixture.h"
#include "engine/ControlPorts.h"

namespace quib {
namespace {

class CControlRouterTest : public CEngineTest {
protected:
    CControlRouterTest() { Prepare(64); }

    void Bind(std::vector<ControlBinding> bindings) {
        CControlMap map;
        for (const ControlBinding& binding : bindings) map = map.With(binding);
        Publish(audio.controlMap, std::move(map));
    }
    static ControlBinding Knob(int number, const ControlTarget& target, EControlMode mode = EControlMode::kJump,
                               float low = 0, float high = 1) {
        return {{EControlSource::kController, 1, number}, target, mode, low, high};
    }
    void Send(int status, int data1, int data2) {
        const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
        ASSERT_TRUE(audio.ReceiveMidi({byte(status), byte(data1), byte(data2), 0}));
        audio.RenderBlock();
    }
    std::vector<EngineNotice> Notices() {
        std::vector<EngineNotice> notices;
        for (EngineNotice notice; audio.Fetch(notice);) notices.push_back(notice);
        return notices;
    }
};

TEST_F(CControlRouterTest, EveryKindOfTargetMovesInTheBlockInWhichItIsHeard) {
    CInstrument& instrument = AddInstrument();
    Put(instrument.inserts[0], LoadPlugin("Gain", ESlotKind::kEffect));
    Put(audio.masterInserts[1], LoadPlugin("Gain", ESlotKind::kEffect));
    Put(audio.sharedEffects[3], LoadPlugin("Gain", ESlotKind::kEffect));
    BallSound ball;
    ball.vertical.push_back({EBallTarget::kMix, 1, 0, 128, 0});
    Publish(instrument.ballSounds, BallSoundList{ball});
    const std::uint32_t id = instrument.Id();
    const std::vector<ControlTarget> targets = {
        {EControlTarget::kStrip, id, 0},  {EControlTarget::kStrip, id, 4},   {EControlTarget::kStrip, id, 24},
        {EControlTarget::kPlugin, id, 2}, {EControlTarget::kInsert1, id, 0}, {EControlTarget::kInstrument, id, 9},
        {EControlTarget::kMaster, 0, 0},  {EControlTarget::kMaster, 0, 4},   {EControlTarget::kMasterInsert2, 0, 0},
        {EControlTarget::kEffect4, 0, 0}, {EControlTarget::kBallX, id, 0},   {EControlTarget::kBallY, id, 0}};
    std::vector<ControlBinding> bindings;
    for (std::size_t number = 0; number < targets.size(); ++number)
        bindings.push_back(Knob(static_cast<int>(number), targets[number]));
    Bind(bindings);
    for (int place : {127, 0, 127}) {
        for (std::size_t number = 0; number < targets.size(); ++number) Send(0xb0, static_cast<int>(number), place);
    }
    EXPECT_EQ(instrument.strip.level.Get(), 127);
    EXPECT_EQ(instrument.strip.eqFreq[0].Get(), 1);
    EXPECT_EQ(instrument.strip.crossfadeA.Get(), 1);
    EXPECT_EQ(PluginOf(instrument).Parameter(2), 1);
    EXPECT_EQ(instrument.inserts[0].ForEdit()->plugin->Parameter(0), 1);
    EXPECT_EQ(instrument.swing.Get(), 1);
    EXPECT_EQ(audio.settings.masterLevel.Get(), 127);
    EXPECT_EQ(audio.settings.tempo.Get(), 300);
    EXPECT_EQ(audio.masterInserts[1].ForEdit()->plugin->Parameter(0), 1);
    EXPECT_EQ(audio.sharedEffects[3].ForEdit()->plugin->Parameter(0), 1);
    EXPECT_EQ(instrument.play.balls[0][0], 127);
    EXPECT_NEAR(instrument.strip.pan.Get(), 1, 0.02F) << "what is assigned to the ball follows";
    EXPECT_TRUE(PluginOf(instrument).IsHeld(2)) << "its automation waits";
    EXPECT_EQ(instrument.heldMix.Get() & 0x11U, 0x11U);
}

TEST_F(CControlRouterTest, EncodersPairsPressesAndRangesDoWhatTheySay) {
    CInstrument& instrument = AddInstrument();
    CValue& level = instrument.strip.level;
    const ControlTarget target{EControlTarget::kStrip, instrument.Id(), 0};
    const struct {
        EControlMode mode;
        int up;
        int down;
    } encoders[] = {{EControlMode::kTwos, 3, 125}, {EControlMode::kOffset, 67, 61}, {EControlMode::kSign, 3, 67}};
    for (const auto& encoder : encoders) {
        Bind({Knob(9, target, encoder.mode, 0.25F, 0.75F)});
        level.Set(60);
        Send(0xb0, 9, encoder.up);
        EXPECT_NEAR(level.Get(), 63, 0.01F);
        Send(0xb0, 9, encoder.down);
        EXPECT_NEAR(level.Get(), 60, 0.01F);
        for (int turn = 0; turn < 40; ++turn) Send(0xb0, 9, encoder.up);
        EXPECT_NEAR(level.Get(), 0.75F * 127, 0.01F) << "the end of the range";
    }
    Bind({{{EControlSource::kFineController, 1, 1}, target, EControlMode::kJump, 1, 0}});
    Send(0xb0, 1, 64);
    EXPECT_NEAR(level.Get(), 0.75F * 127, 0.01F) << "the fine part is awaited";
    Send(0xb0, 33, 1);
    EXPECT_NEAR(level.Get(), (0.5F - 1.0F / 16384) * 127, 0.01F);
    Send(0xb0, 1, 0);
    Send(0xb0, 1, 0);
    EXPECT_NEAR(level.Get(), 127, 0.01F) << "a coarse part alone";
    Bind({{{EControlSource::kKey, 2, 60}, {EControlTarget::kStrip, instrument.Id(), 2}, EControlMode::kToggle}});
    instrument.midi.channel.Set(kChannelOmni);
    for (const float muted : {1.0F, 0.0F}) {
        Send(0x90, 60, 100);
        Send(0x80, 60, 0);
        EXPECT_EQ(instrument.strip.mute.Get(), muted);
    }
    EXPECT_TRUE(Listen(instrument, 64).empty()) << "a bound key plays nothing";
    Bind({{{EControlSource::kKey, 2, 61}, target, EControlMode::kWhileDown, 0.5F, 1}});
    Send(0x90, 61, 100);
    EXPECT_EQ(level.Get(), 127);
    Send(0x80, 61, 0);
    EXPECT_EQ(level.Get(), 63.5F);
    Bind({Knob(3, {EControlTarget::kPattern, instrument.Id(), 7})});
    (void)Notices();
    for (const int place : {10, 100, 120, 20, 90}) Send(0xb0, 3, place);
    const auto notices = Notices();
    ASSERT_EQ(notices.size(), 2U) << "each way over the middle is a press";
    EXPECT_EQ(notices[0].kind, EngineNotice::EKind::kControlAction);
    EXPECT_EQ(notices[0].value, 7);
}

TEST_F(CControlRouterTest, WhileSomethingIsLearnedMessagesAreToldAndMoveNothing) {
    CInstrument& instrument = AddInstrument();
    Bind({Knob(9, {EControlTarget::kStrip, instrument.Id(), 0})});
    instrument.strip.level.Set(50);
    audio.controlLearning.Set(1);
    Send(0xb0, 9, 127);
    EXPECT_EQ(instrument.strip.level.Get(), 50);
    const auto notices = Notices();
    ASSERT_EQ(notices.size(), 1U);
    EXPECT_EQ(notices[0].value, 0xb0 | 9 << 8 | 127 << 16);
}

TEST_F(CControlRouterTest, AFloodHarmsNothingWhileTheTableIsEdited) {
    std::vector<ControlTarget> targets;
    for (int i = 0; i < 4; ++i) {
        CInstrument& instrument = AddInstrument();
        for (int index = 0; index < 10; ++index) {
            targets.push_back({EControlTarget::kStrip, instrument.Id(), index});
            targets.push_back({EControlTarget::kPlugin, instrument.Id(), index % 4});
        }
    }
    std::atomic<bool> goesOn{true};
    std::thread hands([&] {
        for (std::uint32_t turn = 0; goesOn.load(); ++turn) {
            const auto byte = [](std::uint32_t value) { return static_cast<std::uint8_t>(value & 0x7f); };
            const std::uint8_t status = turn % 5 == 0 ? 0x90 : turn % 7 == 0 ? 0xe0 : 0xb0;
            if (!audio.ReceiveMidi({status, byte(turn), byte(turn / 3), turn})) std::this_thread::yield();
        }
    });
    std::thread renderer([&] {
        while (goesOn.load()) audio.RenderBlock();
    });
    for (int edit = 0; edit < 400; ++edit) {
        CControlMap map = *audio.controlMap.ForEdit();
        const auto number = static_cast<std::size_t>(edit);
        if (edit % 4 == 3) {
            const ControlTarget gone = targets[number * 7 % targets.size()];
            map = map.Without([&](const ControlBinding& binding) { return binding.target == gone; });
        }
        map = map.With({{static_cast<EControlSource>(edit % 4), 1, edit % 32},
                        targets[number % targets.size()],
                        static_cast<EControlMode>(edit % kControlModeCount)});
        Publish(audio.controlMap, std::move(map));
        (void)Notices();
        audio.controlLearning.Set(edit % 50 == 0 ? 1 : 0);
        audio.Collect();
        std::this_thread::yield();
    }
    while (audio.Picture().midiCount < 1'000) std::this_thread::yield();
    goesOn.store(false);
    hands.join();
    renderer.join();
    std::uint32_t moves = 0;
    for (const CControlMap::Entry& entry : audio.controlMap.ForEdit()->Entries()) moves += entry.play->moves.Get();
    EXPECT_GT(moves, 0U);
}

}  // namespace
}  // namespace quib
