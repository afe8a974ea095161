// SPDX-License-Identifier: GPL-3.0-or-later
// MIDI learn over a real project: bound, saved, loaded, undone, taken away with what it moved.
#include "document/DocumentFixture.h"

namespace quib {
namespace {

class ControllersTest : public DocumentTest {
protected:
    ControllersTest() {
        AddSynth();
        audio.Prepare({44100.0, 256, 1, false});
    }
    void Send(int status, int data1, int data2) {
        const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
        ASSERT_TRUE(audio.ReceiveMidi({byte(status), byte(data1), byte(data2), 0}));
        audio.RenderBlock();
    }
    // As a hand does it: the control is picked, the button pressed, which is certain at once.
    void LearnKey(const ControlTarget& target, int key) {
        Controllers().Learn(target);
        Send(0x90, key, 100);
        workstation->Tick();
        ASSERT_FALSE(Controllers().Learning()) << key;
    }
    void LearnKnob(const ControlTarget& target, int number) {
        Controllers().Learn(target);
        for (int place = 20; place < 36; ++place) Send(0xb1, number, place);
        workstation->Tick();
        ASSERT_FALSE(Controllers().Learning()) << number;
    }
    CControllers& Controllers() { return workstation->Controllers(); }
    std::size_t Count() { return Controllers().Map().Entries().size(); }
    std::vector<ControlTarget> ThirtyTargets() {
        std::vector<ControlTarget> targets;
        for (int index = 0; index < 2; ++index) {
            const std::uint32_t id = At(index)->Id();
            for (const int parameter : {0, 1, 4, 5, 6, 7, 16, 18})
                targets.push_back({EControlTarget::kStrip, id, parameter});
            for (int parameter = 0; parameter < 5; ++parameter)
                targets.push_back({EControlTarget::kPlugin, id, parameter});
            targets.push_back({EControlTarget::kInstrument, id, 9});
        }
        targets.push_back({EControlTarget::kMaster, 0, 1});
        targets.push_back({EControlTarget::kMaster, 0, 4});
        return targets;
    }
    float Now(const ControlTarget& target) {
        const auto instrument = Stack().InstrumentById(target.instrument);
        if (target.kind == EControlTarget::kInstrument) return instrument->swing.Get();
        const auto lane = LaneOf(target, instrument);
        return *workstation->Lanes().ValueNow(lane->instrument, lane->key);
    }

    CAudio& audio = workstation->Audio();
};

TEST_F(ControllersTest, ThirtyControlsAreBoundSavedLoadedAndAllMove) {
    AddSynth();
    const auto targets = ThirtyTargets();
    ASSERT_EQ(targets.size(), 30U);
    for (std::size_t i = 0; i < targets.size(); ++i) LearnKnob(targets[i], static_cast<int>(i) + 40);
    EXPECT_EQ(Count(), 30U);
    EXPECT_EQ(UndoText(), "Learn MIDI");
    QString error;
    ASSERT_TRUE(Session().SaveProject(File("bound.prg"), error)) << error.toStdString();
    Session().NewProject();
    EXPECT_EQ(Count(), 2U) << "those of the master section are kept for all projects";
    ASSERT_TRUE(Session().LoadProject(File("bound.prg"), error)) << error.toStdString();
    const auto again = ThirtyTargets();
    ASSERT_EQ(Count(), 30U);
    for (std::size_t i = 0; i < again.size(); ++i) {
        const int knob = static_cast<int>(i) + 40;
        Send(0xb1, knob, 0);
        for (int place = 1; place <= 127; place += 3) {
            const float before = Now(again[i]);
            Send(0xb1, knob, place);
            const float range = again[i].kind == EControlTarget::kMaster ? 280.0F : 127.0F;
            EXPECT_LE(std::abs(Now(again[i]) - before), range * 4 / 127) << "it never jumps: " << knob;
        }
        const float high = Now(again[i]);
        for (int place = 127; place >= 0; place -= 3) Send(0xb1, knob, place);
        EXPECT_NE(Now(again[i]), high) << Controllers().TargetText(again[i]).toStdString();
    }
    workstation->Tick();
    EXPECT_TRUE(Session().IsModified());
}

TEST_F(ControllersTest, WhatGoesTakesItsBindingsAlongInOneStepAndUndoBringsBoth) {
    AddSynth();
    const std::uint32_t id = At(0)->Id();
    QString error;
    ASSERT_TRUE(Places().LoadPlugin({SlotPlace::EKind::kInsert, id, 0}, QStringLiteral("QUIB delay"), error));
    LearnKey({EControlTarget::kStrip, id, 2}, 36);
    LearnKey({EControlTarget::kInsert1, id, 0}, 37);
    LearnKey({EControlTarget::kStrip, At(1)->Id(), 2}, 38);
    LearnKey({EControlTarget::kTransport, 0, 0}, 39);
    const int step = Steps().index();
    Places().ClearPlugin({SlotPlace::EKind::kInsert, id, 0});
    EXPECT_EQ(Count(), 3U);
    EXPECT_EQ(Steps().index(), step + 1);
    workstation->Changes().Undo();
    EXPECT_EQ(Count(), 4U);
    Stack().RemoveInstrument(0);
    EXPECT_EQ(Count(), 2U);
    EXPECT_EQ(Steps().index(), step + 1);
    workstation->Changes().Undo();
    EXPECT_EQ(Count(), 4U);
    Send(0x90, 36, 100);
    EXPECT_TRUE(At(0)->strip.mute.IsOn());
    Stack().ResetInstrument(0);
    EXPECT_NE(Controllers().Find({EControlTarget::kStrip, At(0)->Id(), 2}), nullptr) << "it is still the same one";
    while (Steps().canUndo()) workstation->Changes().Undo();
    EXPECT_EQ(Count(), 0U);
    while (Steps().canRedo()) workstation->Changes().Redo();
    EXPECT_EQ(Count(), 4U);
}

TEST_F(ControllersTest, KeysPlaySelectArmAndRecallAndTheMapForAllProjectsIsKeptInTheSettings) {
    LearnKey({EControlTarget::kTransport, 0, static_cast<int>(ETransportKey::kPlay)}, 40);
    LearnKey({EControlTarget::kPattern, At(0)->Id(), 5}, 41);
    LearnKey({EControlTarget::kTransport, 0, static_cast<int>(ETransportKey::kRecordAutomation)}, 42);
    LearnKey({EControlTarget::kSolo, At(0)->Id(), 0}, 43);
    for (const int key : {40, 41, 42, 43}) {
        Send(0x90, key, 90);
        Send(0x80, key, 0);
    }
    workstation->Tick();
    audio.RenderBlock();
    EXPECT_TRUE(workstation->Transport().IsPlaying());
    EXPECT_EQ(At(0)->patternSelected.Get(), 5);
    EXPECT_TRUE(audio.recordAutomation.IsOn());
    EXPECT_TRUE(Stack().IsSolo(0));
    CWorkstation other(settings, folders);
    ASSERT_EQ(other.Controllers().Map().Entries().size(), 2U);
    EXPECT_NE(other.Controllers().Find({EControlTarget::kTransport, 0, 0}), nullptr);
    Controllers().RemoveAll();
    EXPECT_EQ(CWorkstation(settings, folders).Controllers().Map().Entries().size(), 0U);
    workstation->Changes().Undo();
    EXPECT_EQ(CWorkstation(settings, folders).Controllers().Map().Entries().size(), 2U);
}

TEST_F(ControllersTest, ABoundKnobIsRecordedWinsOverItsLaneAndIsTheLaneTouchedLast) {
    audio.settings.songMode.Set(0.0F);
    const ControlTarget pan{EControlTarget::kStrip, At(0)->Id(), 1};
    LearnKnob(pan, 21);
    Contents().SetLanes(At(0)->Id(), ELanes::kMix,
                        std::make_shared<const CEventLanes>(CEventLanes().With(0, 1, {{0, -1}, {15, -1}})),
                        QStringLiteral("Lane"));
    audio.recordAutomation.Set(1.0F);
    workstation->Transport().Play();
    audio.RenderBlock();
    Send(0xb1, 21, 0);
    for (int place = 0; place <= 100; place += 2) {
        Send(0xb1, 21, place);
        EXPECT_NEAR(At(0)->strip.pan.Get(), 2 * ShareOf(place, 127) - 1, 1e-4F) << "the hand wins";
        workstation->Tick();
    }
    EXPECT_EQ(workstation->AutomationRecording().LastTouched()->second, (LaneKey{ELaneGroup::kMix, 1}));
    workstation->Transport().Stop();
    audio.RenderBlock();
    workstation->Tick();
    EXPECT_EQ(UndoText(), "Record automation");
    const PointList points = *At(0)->mixLanes.ForEdit()->Find(0, 1);
    EXPECT_GT(std::max_element(points.begin(), points.end(), [](auto& a, auto& b) { return a.y < b.y; })->y, 0.4F);
}

}  // namespace
}  // namespace quib
