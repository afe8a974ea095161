// SPDX-License-Identifier: GPL-3.0-or-later
// What the user's gestures do to values, and that each is one step to undo.

#include <QLineEdit>

#include "controls/CBubble.h"
#include "controls/CEntryDialog.h"
#include "controls/CFaderCtrl.h"
#include "controls/CKnobCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CSwitchFaderCtrl.h"
#include "controls/ControlFixture.h"

namespace quib {

class CGestureTest : public CControlTest {
protected:
    CFaderCtrl& AddFader() {
        auto& fader = Add<CFaderCtrl>(10, 10, 112, 20, &value, false);
        fader.defaultValue = 0.25F;
        fader.onGesture = [this](CControl&, float before) { gestures.push_back(before); };
        fader.onChange = [this](CControl&) { ++changes; };
        Open();
        EXPECT_EQ(fader.Travel(), 100);
        return fader;
    }
    std::vector<float> gestures;
    int changes = 0;
};

TEST_F(CGestureTest, TheWheelTurnsByAHundredthOrWithCtrlByAThousandthOfTheRange) {
    auto& fader = AddFader();
    fader.minimum = -2;
    fader.maximum = 2;
    Wheel(50, 20, 3);
    EXPECT_NEAR(value.Get(), 0.62F, 1e-6);
    modifiers = Qt::ControlModifier;
    Wheel(50, 20, -5);
    EXPECT_NEAR(value.Get(), 0.6F, 1e-6);
    modifiers = {};
    Wheel(50, 20, 200);
    EXPECT_EQ(value.Get(), 2.0F);
    EXPECT_EQ(gestures.size(), 3U);
    Wheel(50, 20, 1);
    EXPECT_EQ(gestures.size(), 3U) << "nothing changed";
}

TEST_F(CGestureTest, ADragIsOneGestureAndItsBubbleShowsTheValue) {
    auto& fader = AddFader();
    fader.formatValue = [](float now) { return QString::number(std::lround(now * 100)) + QStringLiteral(" units"); };
    const auto* const bubble = window.findChild<CBubble*>();
    Move(60, 20);
    Press(60, 20);
    for (int x = 61; x <= 80; ++x) Move(x, 20);
    EXPECT_TRUE(bubble->isVisible());
    EXPECT_NEAR(value.Get(), 0.7F, 1e-6);
    EXPECT_TRUE(gestures.empty());
    EXPECT_EQ(changes, 20);
    Release(80, 20);
    EXPECT_EQ(gestures, std::vector<float>{0.5F});
    EXPECT_FALSE(bubble->isVisible());
    // Far beyond the end.
    PassBounce();
    Press(60, 20);
    Move(5000, 20);
    EXPECT_EQ(value.Get(), 1.0F);
    Move(-5000, 20);
    EXPECT_EQ(value.Get(), 0.0F);
    Release(-5000, 20);
}

TEST_F(CGestureTest, ShiftOrCtrlMakesADragTenTimesFinerWithoutAJump) {
    const std::vector<Qt::KeyboardModifiers> fineKeys = {Qt::ShiftModifier, Qt::ControlModifier};
    auto& fader = AddFader();
    auto& knob = Add<CKnobCtrl>(200, 10, 40, 40, &value);
    window.LayoutAndRefresh();
    for (const Qt::KeyboardModifiers fine : fineKeys) {
        // From the fader's thumb sideways, from the knob's centre upwards.
        for (CControl* const control : {static_cast<CControl*>(&fader), static_cast<CControl*>(&knob)}) {
            const bool isKnob = control == &knob;
            const auto at = [isKnob](int way) { return isKnob ? QPoint(220, 30 - way) : QPoint(60 + way, 20); };
            const float perPixel = isKnob ? 1.0F / 128 : 1.0F / 100;
            const auto moveTo = [&](int way) { Move(at(way).x(), at(way).y()); };
            value.Set(0.5F);
            moveTo(0);
            Press(at(0).x(), at(0).y());
            moveTo(10);
            const float coarse = value.Get();
            EXPECT_NEAR(coarse, 0.5F + 10 * perPixel, 1e-6);
            modifiers = fine;
            moveTo(11);
            EXPECT_NEAR(value.Get(), coarse + 0.1F * perPixel, 1e-6);
            moveTo(21);
            EXPECT_NEAR(value.Get(), coarse + 1.1F * perPixel, 1e-6);
            modifiers = Qt::NoModifier;
            moveTo(22);
            EXPECT_NEAR(value.Get(), coarse + 2.1F * perPixel, 1e-6);
            Release(at(22).x(), at(22).y());
            PassBounce();
        }
    }
}

TEST_F(CGestureTest, AltClickAndDoubleClickReturnToTheDefault) {
    auto& fader = AddFader();
    modifiers = Qt::AltModifier;
    Click(60, 20);
    EXPECT_EQ(value.Get(), 0.25F);
    EXPECT_EQ(gestures, std::vector<float>{0.5F});
    modifiers = {};
    value.Set(0.75F);
    DoubleClick(60, 20);
    EXPECT_EQ(value.Get(), 0.25F);
    EXPECT_EQ(gestures.size(), 2U);
    // Where a value can be typed a double click asks for it.
    value.Set(0.75F);
    fader.entryTitle = QStringLiteral("Level");
    DoubleClick(60, 20);
    EXPECT_EQ(value.Get(), 0.75F);
    ASSERT_NE(window.findChild<CEntryDialog*>(), nullptr);
    window.findChild<CEntryDialog*>()->reject();
    fader.enabled = false;
    modifiers = Qt::AltModifier;
    Click(60, 20);
    EXPECT_EQ(value.Get(), 0.75F);
}

TEST_F(CGestureTest, ATypedEntryIsLimitedToTheRange) {
    auto& fader = AddFader();
    fader.minimum = 0.2F;
    fader.entryTitle = QStringLiteral("Level");
    const std::vector<std::tuple<const char*, bool, float>> entries = {
        {"0.75", true, 0.75F}, {"1e9", true, 1.0F}, {"none", true, 0.2F}, {"0,5 dB", true, 0.5F},
        {"1e999", true, 1.0F}, {"-3", true, 0.2F},  {"0.9", false, 0.5F}, {"nan", true, 0.2F}};
    for (const auto& [text, accept, expected] : entries) {
        value.Set(0.5F);
        Click(60, 20, Qt::RightButton);
        auto* const dialog = window.findChild<CEntryDialog*>();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->windowTitle(), fader.entryTitle);
        dialog->findChild<QLineEdit*>()->setText(QString::fromLatin1(text));
        accept ? dialog->accept() : dialog->reject();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(value.Get(), expected) << text;
    }
    QString taken;
    fader.onTextEntry = [&taken](CControl&, const QString& text) { taken = text; };
    Click(60, 20, Qt::RightButton);
    window.findChild<CEntryDialog*>()->accept();
    EXPECT_EQ(taken, QStringLiteral("0.2"));
}

TEST_F(CGestureTest, DigitsTypedOverAControlSetIt) {
    auto& fader = AddFader();
    std::vector<int> keysSeen;
    auto& probe = Add<CProbe>(200, 10, 20, 20);
    window.LayoutAndRefresh();
    Move(60, 20);
    Type(QStringLiteral("0,6"));
    EXPECT_EQ(value.Get(), 0.5F) << "not before it is done";
    Key(Qt::Key_Return);
    EXPECT_EQ(value.Get(), 0.6F);
    Type(QStringLiteral(".95"));
    Key(Qt::Key_Backspace);
    Move(210, 20);
    EXPECT_EQ(value.Get(), 0.9F) << "done when the mouse leaves";
    Move(60, 20);
    Type(QStringLiteral("0"));
    Key(Qt::Key_Escape);
    EXPECT_EQ(value.Get(), 0.9F);
    EXPECT_EQ(gestures.size(), 2U);
    EXPECT_EQ(probe.Count("keyDown"), 0);
    Type(QStringLiteral("x"));
    EXPECT_EQ(probe.Count("keyDown"), 1) << "a letter is no number";
    Type(QStringLiteral("7"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return value.Get() == 1.0F; }, 5000)) << "done after a while";
    fader.enabled = false;
    Type(QStringLiteral("0"));
    EXPECT_EQ(probe.Count("keyDown"), 2);
}

TEST_F(CGestureTest, ASendIsSwitchedInItsRightmost25PixelsAndDraggedElsewhere) {
    CValue level(40);
    auto& send = Add<CSwitchFaderCtrl>(10, 10, 152, 20, &value, &level);
    send.levelDefault = 100;
    value.Set(0);
    std::vector<float> levels;
    send.onLevelGesture = [&levels](CControl&, float before) { levels.push_back(before); };
    QString message;
    window.onMessage = [&message](const QString&, const QString& text) { message = text; };
    Open();
    Click(10 + 127, 20);
    EXPECT_EQ(value.Get(), 1.0F);
    EXPECT_EQ(level.Get(), 40.0F);
    Drag(10 + 126, 20, 10 + 106, 20);
    EXPECT_EQ(value.Get(), 1.0F);
    EXPECT_NEAR(level.Get(), 20.0F, 1e-4);
    PassBounce();
    modifiers = Qt::AltModifier;
    Click(50, 20);
    modifiers = {};
    Wheel(50, 20, -2);
    EXPECT_NEAR(level.Get(), 100 - 2.54F, 1e-4);
    EXPECT_EQ(levels.size(), 3U);
    DoubleClick(10 + 140, 20);
    EXPECT_EQ(value.Get(), 1.0F) << "two clicks on the switch";
    // With nothing to send to it tells how to choose an effect, unless both info settings are off.
    send.enabled = false;
    Click(50, 20);
    EXPECT_TRUE(message.isEmpty()) << "not stored counts as off here";
    settings.values["DisplayInfoMessagesFrench"] = 1;
    settings.values["DisplayInfoMessagesEnglish"] = 1;
    Click(50, 20);
    EXPECT_TRUE(message.startsWith(QStringLiteral("You can select an effect")));
    EXPECT_NEAR(level.Get(), 100 - 2.54F, 1e-4);
}

TEST_F(CGestureTest, ASwitchTurnsAnythingButZeroToZero) {
    auto& control = Add<CSwitchCtrl>(10, 10, 40, 20, &value, QStringLiteral("ON"));
    Open();
    for (const auto& [before, after] : std::vector<std::pair<float, float>>{{0, 1}, {1, 0}, {0.25F, 0}}) {
        value.Set(before);
        Click(20, 20);
        EXPECT_EQ(value.Get(), after);
    }
    control.readOnly = true;
    Click(20, 20);
    EXPECT_EQ(value.Get(), 0.0F);
}

}  // namespace quib
