// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CKeyboardExCtrl.h"
#include "controls/CPatternSelCtrl.h"
#include "controls/CStepLedCtrl.h"
#include "controls/ControlFixture.h"

namespace quib {

using CInstrumentControlsTest = CControlTest;

class CFakePatterns : public CPatternOwner {
public:
    Look PatternLook() const override { return look; }
    void SelectPattern(int pattern) override { told.push_back("select " + std::to_string(pattern)); }
    void CopyPattern(int from, int to) override {
        told.push_back("copy " + std::to_string(from) + " " + std::to_string(to));
    }
    bool MayTogglePatternFlag() const override { return mayToggle; }
    void TogglePatternFlag(int pattern) override { look.flagged ^= 1U << pattern; }
    void SendPatternMask(std::uint32_t mask) override { told.push_back("mask " + std::to_string(mask)); }
    std::vector<std::string> Taken() { return std::exchange(told, {}); }

    Look look;
    bool mayToggle = true;
    std::vector<std::string> told;
};

TEST_F(CInstrumentControlsTest, PatternsAreSelectedCopiedAndMarked) {
    using Told = std::vector<std::string>;
    CFakePatterns patterns;
    auto& cells = Add<CPatternSelCtrl>(10, 10, 20, 40, 12, &patterns);
    cells.onFlag = [&patterns](CPatternOwner&) { patterns.told.emplace_back("flag"); };
    Open();
    const auto drag = [this](int from, int to, Qt::MouseButton button) {
        Move(from, 30);
        Press(from, 30, button);
        for (int x = from; x != to; x += to > from ? 1 : -1) Move(x, 30);
        Move(to, 30);
        Release(to, 30, button);
        PassBounce();
    };
    const auto cell = [](int index) { return 10 + 20 * index + 10; };
    Click(10, 30);
    Click(329, 30);
    EXPECT_EQ(patterns.Taken(), (Told{"select 0", "select 15"}));
    Click(330, 30);      // to the right of the last one
    Click(cell(3), 21);  // above them
    EXPECT_EQ(patterns.Taken(), Told{});
    drag(cell(3), cell(7), Qt::RightButton);
    EXPECT_EQ(patterns.Taken(), Told{"copy 3 7"});
    drag(cell(3), 390, Qt::RightButton);
    EXPECT_EQ(patterns.Taken(), Told{});
    drag(cell(3), cell(3), Qt::RightButton);
    drag(cell(15), cell(15), Qt::RightButton);
    drag(cell(3), cell(3), Qt::RightButton);
    EXPECT_EQ(patterns.Taken(), (Told{"flag", "mask 4096", "flag", "mask 4097", "flag", "mask 1"}));
    patterns.mayToggle = false;
    drag(cell(3), cell(3), Qt::RightButton);
    EXPECT_EQ(patterns.Taken(), Told{});
    drag(cell(3), cell(7), Qt::LeftButton);
    EXPECT_EQ(patterns.Taken(), Told{"select 3"});
    auto& nobody = Add<CPatternSelCtrl>(10, 100, 20, 20, 0, nullptr);
    window.LayoutAndRefresh();
    Click(20, 110);
    nobody.Tick();
}

TEST_F(CInstrumentControlsTest, OnlyTheCellsThatChangeAreRedrawn) {
    CFakePatterns patterns;
    Add<CPatternSelCtrl>(10, 10, 20, 20, 0, &patterns);
    Open();
    patterns.look.playing = 5;
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), (1 + 1) * 20 * 20) << "and the selected one";
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 0);
    patterns.look.filled = 1U << 9U;
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), (1 + 2) * 20 * 20);
}

TEST_F(CInstrumentControlsTest, APlayingStepRedrawsTwoLeds) {
    auto& leds = Add<CStepLedCtrl>(10, 10, 160, 6, qRgb(0x30, 0x30, 0x30));
    int step = 3;
    leds.playingStep = [&step] { return step; };
    Open();
    window.Tick();
    step = 4;
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 2 * 9 * 6);
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 0);
    leds.SetStepCount(32);
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 160 * 6);
    // Pages of 64 follow playing until the wheel turns them.
    int pressed = -1;
    leds.onPress = [&pressed](int box) { pressed = box; };
    leds.SetStepCount(150);
    EXPECT_EQ(leds.PageCount(), 3);
    step = 130;
    window.Tick();
    EXPECT_EQ(leds.Page(), 2);
    Click(11, 14);
    EXPECT_EQ(pressed, 128);
    Click(160, 14);
    EXPECT_EQ(pressed, 149) << "the last step of a page that is not full";
    Wheel(11, 14, 1);
    step = 131;
    window.Tick();
    EXPECT_EQ(leds.Page(), 1);
    for (const int next : {-1, 2}) {
        step = next;
        window.Tick();
    }
    EXPECT_EQ(leds.Page(), 0) << "a new start is followed again";
    leds.SetStepCount(64);
    EXPECT_EQ(leds.PageCount(), 1);
}

class CKeyboardTest : public CControlTest {
protected:
    CKeyboardExCtrl& AddKeyboard(int height, bool compact) {
        auto& keyboard = Add<CKeyboardExCtrl>(10, 10, 300, height, compact);
        keyboard.onNote = [this](CKeyboardExCtrl&, int note, bool off) {
            told += (off ? " -" : " +") + std::to_string(note);
        };
        return keyboard;
    }
    std::string Taken() { return std::exchange(told, {}); }
    std::string told;
};

TEST_F(CKeyboardTest, TheKeysLieWhereTheyAreDrawn) {
    auto& normal = AddKeyboard(100, false);
    auto& compact = AddKeyboard(60, true);
    Open();
    for (const auto& [x, y, note] : std::vector<std::tuple<int, int, int>>{
             {0, 0, 0},    {13, 0, 0},   {14, 0, 1},    {27, 0, 1},    {28, 0, 2},    {34, 61, 3}, {48, 61, 4},
             {59, 0, 4},   {60, 0, 5},   {74, 0, 6},    {88, 0, 7},    {94, 0, 8},    {108, 0, 9}, {114, 0, 10},
             {127, 0, 10}, {128, 0, 11}, {139, 0, 11},  {140, 0, 12},  {154, 0, 13},  {19, 62, 0}, {20, 62, 2},
             {59, 62, 4},  {60, 62, 5},  {139, 62, 11}, {140, 62, 12}, {200, 62, 17}, {34, 62, 2}}) {
        EXPECT_EQ(normal.NoteAt(10 + x, 10 + y), note) << x << "," << y;
        EXPECT_EQ(compact.NoteAt(10 + x, 10 + (y < 62 ? std::min(y, 35) : 36)), note) << x << "," << y;
    }
    normal.SetScrollOffset(140);
    EXPECT_EQ(normal.NoteAt(10 + 14, 10), 13);
    normal.SetScrollOffset(1 << 20);
    EXPECT_EQ(normal.NoteAt(10 + 299, 10 + 99), 127) << "the last key is at the right end";
    // A drag may leave the keyboard on either side.
    normal.SetScrollOffset(0);
    Click(15, 100);
    Press(15, 100);
    Move(-400, 100);
    Move(4000, 100);
    Release(4000, 100);
    EXPECT_EQ(Taken(), " +0 -0 +0 -0");
    EXPECT_TRUE(normal.HeldNotes().empty());
}

TEST_F(CKeyboardTest, AKeyPlaysWhileItIsHeldAndADragPlaysTheKeysItCrosses) {
    auto& keyboard = AddKeyboard(100, false);
    Open();
    Press(15, 100);
    EXPECT_EQ(keyboard.CurrentNote(), 0);
    Move(35, 100);
    Release(35, 100);
    EXPECT_EQ(Taken(), " +0 -0 +2 -2");
    EXPECT_EQ(keyboard.CurrentNote(), -1);
    PassBounce();
    // With Shift or Ctrl the key that the mouse has left stays held until the next click.
    Key(Qt::Key_Shift);
    Drag(15, 100, 55, 100);
    EXPECT_EQ(Taken(), " +0");
    PassBounce();
    Press(55, 100);
    EXPECT_EQ(Taken(), " -0 +4");
    Release(55, 100);
    EXPECT_EQ(Taken(), " -4");
    Key(Qt::Key_Shift, {}, QEvent::KeyRelease);
    PassBounce();
    Press(15, 100, Qt::RightButton);
    Move(35, 100);
    Release(35, 100, Qt::RightButton);
    EXPECT_EQ(Taken(), "");
    keyboard.onNote = nullptr;
    PassBounce();
    Press(15, 100);
    EXPECT_EQ(keyboard.CurrentNote(), 0);
    EXPECT_TRUE(keyboard.HeldNotes().empty());
}

TEST_F(CKeyboardTest, TheKeyAEndsItsNoteUnlessCtrlIsHeld) {
    auto& keyboard = AddKeyboard(100, false);
    Open();
    keyboard.SetScrollOffset(560);
    Key(Qt::Key_Control);
    Press(15, 100);
    ASSERT_EQ(keyboard.CurrentNote(), 48);
    Key(Qt::Key_A, {}, QEvent::KeyRelease);
    EXPECT_EQ(Taken(), " +48");
    EXPECT_EQ(keyboard.CurrentNote(), -1);
    Key(Qt::Key_Control, {}, QEvent::KeyRelease);
    Key(Qt::Key_A, {}, QEvent::KeyRelease);
    EXPECT_EQ(Taken(), " -48");
}

}  // namespace quib
