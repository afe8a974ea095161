// SPDX-License-Identifier: GPL-3.0-or-later
// Automation over a real project: drawn by a hand, recorded from a knob, kept from a ball.
#include <QTest>
#include <cmath>
#include <random>

#include "app/CSettingsForControls.h"
#include "document/DocumentFixture.h"
#include "editors/CToolWindows.h"
#include "editors/automation/CWinControlParamEvent.h"
#include "editors/ball/CWinControlBall.h"

namespace quib {
namespace {

class AutomationTest : public DocumentTest {
protected:
    AutomationTest() {
        AddSynth();
        audio.Prepare({44100.0, 256, 1, false});
        audio.settings.songMode.Set(0.0F);
        workstation->Selection().SetCurrent(0);
    }
    template <class Window>
    Window& Open(ETool tool) {
        auto* const window = static_cast<Window*>(tools.Open(tool));
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window));
        return *window;
    }
    std::shared_ptr<const CEventLanes> MixLanes() { return At(0)->mixLanes.ForEdit(); }
    void Render(int blocks) {
        for (int block = 0; block < blocks; ++block) audio.RenderBlock();
    }

    CAudio& audio = workstation->Audio();
    CSettingsForControls controlSettings{settings};
    CToolWindows tools{ToolContext{*workstation, controlSettings}, nullptr};
};

TEST_F(AutomationTest, WhateverHandsDrawUndoTakesBackAndRedoBringsAgain) {
    auto& window = Open<CWinControlParamEvent>(ETool::kAutomation);
    window.ChooseLane({ELaneGroup::kMix, 1});
    CEventCtrl& curve = window.Curve();
    const int before = Steps().index();
    const auto at = [&](double step, float value) {
        return QPoint(curve.X() + static_cast<int>(curve.View().XOf(step)),
                      curve.Y() + static_cast<int>(curve.View().YOf(value)));
    };
    QTest::mouseClick(&window, Qt::LeftButton, {}, at(4, 0.5F));
    QTest::mouseClick(&window, Qt::LeftButton, {}, at(8, -0.5F));
    workstation->Changes().Settle();
    ASSERT_NE(MixLanes()->Find(0, 1), nullptr);
    EXPECT_EQ(MixLanes()->Find(0, 1)->size(), 2U);
    EXPECT_EQ(MixLanes()->Find(0, 1)->front().x, 4);
    EXPECT_EQ(Steps().index(), before + 2);
    window.TypeValue(QStringLiteral("0.25"));
    EXPECT_NEAR(MixLanes()->Find(0, 1)->back().y, 0.25F, 0.01F);

    std::mt19937 dice(5);
    const auto place = [&] {
        return std::pair(60 + static_cast<int>(dice() % 500), 30 + static_cast<int>(dice() % 350));
    };
    for (int gesture = 0; gesture < 300; ++gesture) {
        CLaneGestures& hands = curve.Gestures();
        window.SetTool(static_cast<int>(dice() % 6));
        const LaneHand hand = {dice() % 8 == 0, dice() % 8 == 0, dice() % 4 == 0};
        auto [x, y] = place();
        hands.Press(x, y, dice() % 5 == 0, hand);
        for (unsigned move = dice() % 4; move > 0; --move) {
            std::tie(x, y) = place();
            hands.Move(x, y, hand);
        }
        if (dice() % 10 == 0) hands.Cancel();
        if (dice() % 10 == 0) hands.DoubleClick(x, y);
        hands.Release(x, y);
        if (dice() % 12 == 0) hands.Delete();
    }
    workstation->Changes().Settle();
    const auto* const drawn = MixLanes()->Find(0, 1);
    const PointList end = drawn != nullptr ? *drawn : PointList();
    while (Steps().index() > before) workstation->Changes().Undo();
    EXPECT_EQ(MixLanes()->Find(0, 1), nullptr);
    while (Steps().canRedo()) workstation->Changes().Redo();
    const auto* const again = MixLanes()->Find(0, 1);
    EXPECT_EQ(again != nullptr ? *again : PointList(), end);
}

TEST_F(AutomationTest, WhatWasMovedLastIsShownAndValuesAreTypedInItsUnit) {
    CValue& frequency = At(0)->strip.eqFreq[0];
    workstation->Changes().ValueEdited(Part(At(0), frequency), 0.1F, 0.2F, QStringLiteral("Equaliser"));
    auto& window = Open<CWinControlParamEvent>(ETool::kAutomation);
    EXPECT_EQ(window.LaneName(), QStringLiteral("LP Freq"));
    window.Curve().Edit().Apply(AddPoint(window.Curve().Edit().State(), window.Curve().Edit().limits, {2, 0}),
                                "Add point");
    window.TypeValue(QStringLiteral("1.5 kHz"));
    window.TypeTime(QStringLiteral("3.25"));
    const Point point = MixLanes()->Find(0, 4)->front();
    EXPECT_EQ(point.x, 3.25F);
    EXPECT_NEAR(EqFrequencyHertz(point.y), 1500, 15);
    workstation->Places().ParameterEdited(At(0)->plugin.ForEdit()->plugin, 2, 0.0F, 0.5F);
    EXPECT_EQ(window.LaneName().toStdString(), PluginAt(0).Parameters()[2].name);
    window.SetSong(true);
    window.ChooseLane({ELaneGroup::kMaster, 4});
    window.Curve().Edit().Apply(AddPoint(window.Curve().Edit().State(), window.Curve().Edit().limits, {2, 140}),
                                "Add point");
    EXPECT_EQ(audio.masterLanes.ForEdit()->Find(CEventLanes::kSongSlot, 4)->front().y, 140);
}

TEST_F(AutomationTest, AKnobMovedWhileArmedIsWrittenInOneStepAndWinsWhileItIsHeld) {
    CValue& pan = At(0)->strip.pan;
    auto& recording = workstation->AutomationRecording();
    At(0)->patterns[0].Publish(std::make_shared<const CPattern>(64, std::vector<Note>()), audio.graveyard);
    Contents().SetLanes(At(0)->Id(), ELanes::kMix,
                        std::make_shared<const CEventLanes>(CEventLanes().With(0, 1, {{0, -1}, {60, -1}})),
                        QStringLiteral("Lane"));
    const int before = Steps().index();
    audio.recordAutomation.Set(1.0F);
    workstation->Transport().Play();
    Render(70);
    EXPECT_EQ(pan.Get(), -1);
    recording.Hold(&pan, true);
    PointList turned;
    for (int tick = 0; tick < 60; ++tick) {
        pan.Set(std::sin(static_cast<float>(tick) * 0.1F));
        Render(7);
        ASSERT_EQ(pan.Get(), std::sin(static_cast<float>(tick) * 0.1F)) << "the hand wins";
        workstation->Tick();
        const PlayPicture& picture = audio.Picture();
        turned.push_back({static_cast<float>(picture.instruments[0].step) + picture.stepFraction, pan.Get()});
    }
    recording.Hold(&pan, false);
    Render(2);
    EXPECT_EQ(pan.Get(), -1) << "what was there after the movement plays again";
    workstation->Transport().Stop();
    Render(1);
    workstation->Tick();
    EXPECT_EQ(UndoText(), "Record automation");
    EXPECT_EQ(Steps().index(), before + 1);
    const PointList points = *MixLanes()->Find(0, 1);
    EXPECT_LT(points.size(), 30U);
    turned.pop_back();  // there it jumps back
    for (const Point& sample : turned)
        EXPECT_NEAR(*ValueAt(points, sample.x, ELaneKind::kContinuous), sample.y, 0.0101F);
    EXPECT_EQ(*ValueAt(points, turned.front().x - 1, ELaneKind::kContinuous), -1);
    workstation->Changes().Undo();
    EXPECT_EQ(MixLanes()->Find(0, 1)->size(), 2U);
}

TEST_F(AutomationTest, ABallLearnsAKnobMovesItAndItsMovementIsKept) {
    auto& window = Open<CWinControlBall>(ETool::kBall);
    window.AddBall();
    window.Learn(0);
    workstation->Changes().ValueEdited(Part(At(0), At(0)->strip.level), 10.0F, 20.0F, QStringLiteral("Level"));
    ASSERT_EQ(At(0)->ballSounds.ForEdit()->front().horizontal.size(), 1U);
    workstation->Transport().Play();
    const QPoint middle = window.Pad().Rectangle().center();
    QTest::mousePress(&window, Qt::LeftButton, {}, middle);
    for (int way = 0; way <= 60; way += 4) {
        QTest::mouseMove(&window, middle + QPoint(way, 0));
        Render(7);
        window.FollowEngine();
    }
    QTest::qWait(120);
    QTest::mouseRelease(&window, Qt::LeftButton, {}, middle + QPoint(60, 0));
    const float there = 127 * BallShare({EBallTarget::kMix, 0, 0, 128}, window.Pad().Balls()[0][0]);
    EXPECT_NEAR(At(0)->strip.level.Get(), there, 0.01F);
    EXPECT_EQ(UndoText(), "Move ball");
    window.KeepMovement();
    ASSERT_NE(MixLanes()->Find(0, 0), nullptr);
    EXPECT_NEAR(MixLanes()->Find(0, 0)->back().y, there, 0.7F);
    workstation->Changes().Undo();
    EXPECT_EQ(MixLanes()->Find(0, 0), nullptr);
    workstation->Changes().Undo();
    Render(1);
    window.FollowEngine();
    EXPECT_NEAR(window.Pad().Balls()[0][0], 64, 0.5F);
    EXPECT_NEAR(At(0)->strip.level.Get(), 63.5F, 1);
    window.hide();
    EXPECT_EQ(audio.ballsShown.Get(), 0U);
}

}  // namespace
}  // namespace quib
