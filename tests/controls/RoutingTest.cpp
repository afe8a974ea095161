// SPDX-License-Identifier: GPL-3.0-or-later
#include <QLineEdit>

#include "controls/CEntryDialog.h"
#include "controls/CInfoCtrl.h"
#include "controls/ControlFixture.h"
#include "controls/VirtualKeys.h"
#include "texts/Texts.h"

namespace quib {

using CRoutingTest = CControlTest;

TEST_F(CRoutingTest, AControlIsHitUpToOnePixelBeyondItsRightAndBottomEdge) {
    auto& probe = Add<CProbe>(10, 10, 20, 30);
    Open();
    const std::vector<std::tuple<int, int, bool>> points = {{10, 10, true}, {30, 20, true},  {20, 40, true},
                                                            {30, 40, true}, {31, 20, false}, {20, 41, false},
                                                            {9, 20, false}, {20, 9, false}};
    for (const auto& [x, y, isHit] : points) {
        const int before = probe.Count("down");
        Click(x, y);
        EXPECT_EQ(probe.Count("down") - before, isHit ? 1 : 0) << x << "," << y;
    }
}

TEST_F(CRoutingTest, AChildTakesTheMouseFromItsParentUnlessItIsHidden) {
    auto& parent = Add<CProbe>(10, 10, 100, 100);
    auto& child = parent.AddChild<CProbe>(0U, 20, 20, 20, 20);
    auto& behind = Add<CProbe>(0, 0, 200, 200);
    Open();
    Click(40, 40);
    Wheel(40, 41, 1);
    DoubleClick(40, 42);
    EXPECT_EQ(child.Count("down"), 3);  // a double click counts as a second click
    EXPECT_EQ(child.Count("wheel"), 1);
    EXPECT_EQ(child.Count("double"), 1);
    EXPECT_EQ(parent.Count("down") + parent.Count("wheel") + behind.Count("down"), 0);
    child.SetVisible(false);
    Click(40, 40);
    EXPECT_EQ(parent.Count("down"), 1);
    parent.SetVisible(false);
    Click(40, 40);
    EXPECT_EQ(behind.Count("down"), 1);
}

TEST_F(CRoutingTest, TheOtherButtonTakesTheFirstAlternativeThatThereIs) {
    auto& probe = Add<CProbe>(10, 10, 50, 50, &value);
    std::string taken;
    window.onPopupMenu = [&taken](CControl&, int menu) { taken += "menu" + std::to_string(menu); };
    Open();
    Click(20, 20, Qt::RightButton);
    EXPECT_EQ(probe.lastButton, 1) << "no alternative: an ordinary click";
    probe.entryTitle = QStringLiteral("Level");
    Click(20, 20, Qt::RightButton);
    ASSERT_NE(window.findChild<CEntryDialog*>(), nullptr);
    window.findChild<CEntryDialog*>()->reject();
    probe.popupMenu = 7;
    Click(20, 20, Qt::RightButton);
    EXPECT_EQ(taken, "menu7");
    EXPECT_EQ(window.MenuTarget(), &probe);
    probe.onAlternativeClick = [&taken](CControl&) { taken += "called"; };
    Click(20, 20, Qt::RightButton);
    EXPECT_EQ(taken, "menu7called");
    probe.alternativeClickAlways = true;
    Click(20, 20);
    EXPECT_EQ(taken, "menu7calledcalled");
    EXPECT_EQ(probe.Count("down"), 1);
    probe.alternativeClickAlways = false;
    probe.primaryButton = 1;
    Click(20, 20, Qt::RightButton);
    EXPECT_EQ(probe.Count("down"), 2);
}

TEST_F(CRoutingTest, APressWithin20MillisecondsOfAReleaseIsABouncingButton) {
    auto& probe = Add<CProbe>(10, 10, 50, 50);
    Open();
    Press(20, 20);
    Release(20, 20);
    Press(20, 20);
    Release(20, 20);
    EXPECT_EQ(probe.Count("down"), 1);
    EXPECT_EQ(probe.Count("up"), 1);
    PassBounce();
    Press(20, 20);
    EXPECT_EQ(probe.Count("down"), 2);
}

TEST_F(CRoutingTest, APressedControlKeepsTheMouseUntilTheButtonGoesUp) {
    auto& dragged = Add<CProbe>(10, 10, 20, 20);
    auto& other = Add<CProbe>(100, 10, 20, 20);
    Open();
    Move(15, 15);
    Press(15, 15);
    Move(110, 15);
    Move(-50, 500);
    EXPECT_EQ(dragged.Count("move"), 3);
    EXPECT_EQ(other.Count("move"), 0);
    Move(110, 16);
    Release(110, 16);
    EXPECT_EQ(dragged.Count("up"), 1);
    EXPECT_EQ(dragged.Count("leave"), 1);
    EXPECT_TRUE(other.hovered);
    Move(110, 16);
    EXPECT_EQ(other.Count("move"), 1) << "the same place again is no move";
    other.captureOnClick = false;
    PassBounce();
    Press(110, 16);
    Move(15, 15);
    EXPECT_EQ(dragged.Count("move"), 5);
    Release(15, 15);
    EXPECT_EQ(other.Count("up"), 1) << "released wherever the mouse is";
}

TEST_F(CRoutingTest, KeysReachEveryControlHiddenOrNotChildrenFirst) {
    std::vector<std::string> keys;
    auto& parent = Add<CProbe>(10, 10, 100, 100);
    auto& child = parent.AddChild<CProbe>(0U, 0, 0, 10, 10);
    auto& hidden = Add<CProbe>(200, 10, 10, 10);
    hidden.SetVisible(false);
    for (auto& [probe, label] : std::vector<std::pair<CProbe*, const char*>>{
             {&parent, " parent "}, {&child, " child "}, {&hidden, " hidden "}}) {
        probe->keys = &keys;
        probe->label = label;
    }
    Open();
    Key(Qt::Key_Control);
    const std::vector<std::string> expected = {"keyDown child 17", "keyDown parent 17", "keyDown hidden 17"};
    EXPECT_EQ(keys, expected);
    // The key goes up while another window has the keyboard.
    QFocusEvent lost(QEvent::FocusOut);
    QApplication::sendEvent(&window, &lost);
    EXPECT_EQ(std::count(keys.begin(), keys.end(), "keyUp hidden 17"), 1);
}

TEST_F(CRoutingTest, AControlMayRemoveItselfWhereverItIsCalled) {
    Open();
    for (const bool onRelease : {false, true}) {
        auto& top = Add<CProbe>(10, 10, 50, 50, &value);
        const auto remove = [this, &top](CControl&) { window.Remove(top); };
        window.LayoutAndRefresh();
        Move(20, 20);
        if (onRelease) {
            top.onGesture = [remove](CControl& control, float) { remove(control); };
            Press(20, 20);
            value.Set(value.Get() + 0.1F);
            Release(20, 20);
        } else {
            top.onAlternativeClick = remove;
            Press(20, 20, Qt::RightButton);
            Release(20, 20, Qt::RightButton);
        }
        EXPECT_TRUE(window.Controls().empty());
        EXPECT_EQ(window.Mouse().Hovered(), nullptr);
        PassBounce();
    }
}

TEST_F(CRoutingTest, WhatStandsInAHiddenControlIsNotDrawnAndIsTold) {
    auto& parent = Add<CProbe>(10, 10, 100, 100);
    auto& child = parent.AddChild<CProbe>(0U, 10, 10, 20, 20, &value);
    Open();
    parent.SetVisible(false);
    EXPECT_EQ(child.Count("hide"), 1);
    EXPECT_EQ(PaintedBy([&] {
                  value.Set(0.9F);
                  window.Tick();
                  child.Update(false, true);
              }),
              0);
    parent.SetVisible(true);
    const int drawn = child.Count("draw");
    window.Tick();
    EXPECT_EQ(child.Count("draw"), drawn + 1) << "the value changed meanwhile";
}

TEST_F(CRoutingTest, TheInfoPanelSpeaksTheLanguageChosen) {
    auto& panel = Add<CInfoCtrl>(0, 200, 200, 80);
    auto& probe = Add<CProbe>(10, 10, 50, 50);
    window.infoPanel = &panel;
    probe.infoString = 127;
    Open();
    const QString english = InfoText(127, ELanguage::kEnglish);
    const QString french = InfoText(127, ELanguage::kFrench);
    ASSERT_TRUE(english.startsWith(QStringLiteral("PATTERN - To copy a pattern")));
    ASSERT_FALSE(french.isEmpty());
    // -1: not stored.
    const std::vector<std::tuple<int, int, QString>> cases = {{1, 1, english}, {1, 0, english},   {0, 1, french},
                                                              {0, 0, {}},      {-1, -1, english}, {0, -1, french}};
    for (const auto& [englishSetting, frenchSetting, expected] : cases) {
        settings.values.clear();
        if (englishSetting >= 0) settings.values["DisplayInfoMessagesEnglish"] = englishSetting;
        if (frenchSetting >= 0) settings.values["DisplayInfoMessagesFrench"] = frenchSetting;
        panel.Clear();
        Move(5, 5);
        Move(20, 20);
        EXPECT_EQ(panel.Paragraphs().join(QString()), expected) << englishSetting << frenchSetting;
    }
    EXPECT_EQ(InfoText(99999, ELanguage::kEnglish), QString());
}

TEST_F(CRoutingTest, APanelOfItsOwnIsClearedWhenTheMouseLeaves) {
    auto& own = Add<CInfoCtrl>(0, 200, 200, 80);
    auto& common = Add<CInfoCtrl>(200, 200, 200, 80);
    window.infoPanel = &common;
    auto& probe = Add<CProbe>(10, 10, 50, 50);
    probe.infoText = QStringLiteral("TEXT");
    probe.infoPanel = &own;
    Open();
    Move(20, 20);
    EXPECT_EQ(own.Paragraphs(), QStringList{QStringLiteral("TEXT")});
    Move(200, 100);
    EXPECT_TRUE(own.Paragraphs().isEmpty());
    EXPECT_TRUE(common.Paragraphs().isEmpty());
}

}  // namespace quib
