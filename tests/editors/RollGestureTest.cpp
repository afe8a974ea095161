// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <random>

#include "controls/VirtualKeys.h"
#include "editors/RollFixture.h"
#include "editors/pianoroll/CPianoRollKeys.h"
#include "editors/pianoroll/CVelocityGestures.h"

namespace quib {

namespace {

constexpr auto kLeft = EMouseButton::kLeft;
constexpr auto kRight = EMouseButton::kRight;

class CFakeSurface : public IPianoRollSurface {
public:
    void SetCursor(ERollCursor next) override { cursor = next; }
    void ViewMoved() override { ++moves; }
    void MarksChanged() override {}
    void ShowNote(const Note* note) override { shown = note != nullptr; }
    ERollCursor cursor = ERollCursor::kArrow;
    int moves = 0;
    bool shown = false;
};

class RollGesture : public testing::Test {
protected:
    RollGesture() {
        view.Resize(888, 408);
        Show({});
        view.ScrollKeysTo(12 * (127 - 72));  // key 72 is the first row
        view.time.SetExtent(256);
    }
    void Show(std::vector<Note> notes, NoteSelection selection = {}) {
        document.now = std::make_shared<CPattern>(32, std::move(notes));
        edit.Show({document.now, std::move(selection)});
    }
    static int XOf(double step) { return 64 + static_cast<int>(step * 24); }
    static int YOf(int key) { return 24 + (72 - key) * 12 + 6; }
    void Press(double step, int key, EMouseButton button = kLeft) { gestures.Press(button, XOf(step), YOf(key)); }
    void Move(double step, int key) { gestures.Move(XOf(step), YOf(key)); }
    void Release() { gestures.Release(0, 0); }
    void Drag(double fromStep, int fromKey, double toStep, int toKey, EMouseButton button = kLeft) {
        Press(fromStep, fromKey, button);
        Move(toStep, toKey);
        gestures.Release(XOf(toStep), YOf(toKey));
        edit.Settle();
    }
    void Click(double step, int key, EMouseButton button = kLeft) { Drag(step, key, step, key, button); }
    void Key(int key) {
        if (!gestures.KeyDown(key)) keys.KeyDown(key, gestures);
        gestures.KeyUp(key);
        keys.KeyUp(key, gestures);
    }
    const std::vector<Note>& Notes() const { return edit.State().Notes(); }
    const NoteSelection& Selection() const { return edit.State().selection; }
    std::string LastStep() const { return document.steps.empty() ? "" : document.steps.back().name; }
    void ExpectConsistent() const {
        EXPECT_EQ(document.now, edit.State().pattern);
        EXPECT_FALSE(document.before) << "a gesture was left open";
        EXPECT_TRUE(document.IsSilent());
    }

    CFakeDocument document;
    CPianoRollEdit edit{document};
    PianoRollView view;
    PianoRollOptions options;
    CFakeSurface surface;
    CPianoRollGestures gestures{edit, view, options, surface};
    CPianoRollKeys keys{edit, view, options, surface};
};

}  // namespace

TEST_F(RollGesture, TheHeaderSetsTheLengthAndGoesOnWhileDragged) {
    gestures.Press(kLeft, 64 + 5, 10);
    EXPECT_EQ(edit.State().pattern->StepCount(), 1);
    gestures.Move(64 + 24 * 7 + 1, 300);
    EXPECT_EQ(edit.State().pattern->StepCount(), 8);
    Release();
    EXPECT_EQ(document.lengths, (std::vector<int>{1, 8}));
    ASSERT_EQ(document.steps.size(), 1U);
    EXPECT_EQ(LastStep(), "Pattern length");
    gestures.Press(kRight, 64 + 100, 10);
    Release();
    gestures.Press(kLeft, 10, 10);
    Release();
    EXPECT_EQ(document.steps.size(), 1U) << "the right button and what lies before step 0 are ignored";
    view.time.ScrollTo(24 * 4);
    gestures.Press(kLeft, 64, 10);
    gestures.KeyDown(virtualKey::kEscape);
    EXPECT_EQ(edit.State().pattern->StepCount(), 8);
    view.time.ScrollTo(0);
    ExpectConsistent();
}

TEST_F(RollGesture, APressTakesOneOfFourWays) {
    Show({{4, 2, 60, 90}, {8, 2, 60, 80}});
    // 2: on a note that is not selected, then 1: on one that is.
    Click(4.5, 60);
    EXPECT_EQ(Selection(), NoteSelection{0});
    Click(8.5, 60);
    EXPECT_EQ(Selection(), NoteSelection{1});
    gestures.KeyDown(virtualKey::kControl);
    Click(4.5, 60);
    EXPECT_EQ(Selection(), (NoteSelection{0, 1}));
    Press(8.5, 60);
    EXPECT_FALSE(gestures.IsDragging()) << "deselects without a drag";
    Release();
    EXPECT_EQ(Selection(), NoteSelection{0});
    gestures.KeyUp(virtualKey::kControl);
    Press(4.5, 60, kRight);
    EXPECT_EQ(surface.cursor, ERollCursor::kMoveAll);
    EXPECT_TRUE(gestures.IsDragging());
    Release();
    // 3: on empty space with a selection.
    Click(14.5, 65);
    EXPECT_TRUE(Selection().empty());
    EXPECT_EQ(Notes().size(), 2U);
    EXPECT_TRUE(document.steps.empty()) << "selecting is no step";
    // 4: on empty space without one.
    Click(14.5, 65);
    ASSERT_EQ(Notes().size(), 3U);
    EXPECT_EQ(Notes()[2], (Note{14, 1, 65, 100}));
    EXPECT_TRUE(Selection().empty()) << "the next click must add, too";
    view.time.snap = {Snap::EKind::kFraction, 4};
    Click(5.99, 60);
    Click(10.5, 60);
    EXPECT_EQ(Notes().size(), 3U) << "covered cells";
    EXPECT_EQ(document.steps.size(), 1U);
    ExpectConsistent();
}

TEST_F(RollGesture, AFreshNoteIsDraggedToItsLengthAndKey) {
    Press(4.2, 60);
    Move(7.5, 63);
    EXPECT_EQ(Notes().back(), (Note{4, 4, 63, 100}));
    gestures.KeyDown(virtualKey::kAlt);
    Move(7.5, 63);
    EXPECT_NEAR(Notes().back().length, 3.5F, 0.01F);
    gestures.KeyUp(virtualKey::kAlt);
    Release();
    EXPECT_EQ(document.steps.size(), 1U);
    ASSERT_EQ(document.heard.size(), 2U) << "on add and on a change of key";
    EXPECT_EQ(document.heard[1].key, 63);
    Click(20, 60);
    EXPECT_EQ(Notes().back().length, 4.0F) << "the length goes on";
    ExpectConsistent();
}

TEST_F(RollGesture, ADragMovesResizesOrCopies) {
    const struct {
        double from;
        int during;  // a key pressed while dragging
        const char* name;
        std::vector<Note> notes;
    } cases[] = {
        {4.5, 0, "Move notes", {{7, 2, 62, 90}, {9, 1, 65, 80}}},
        {5.9, 0, "Resize notes", {{4, 5, 60, 90}, {6, 4, 63, 80}}},
        {4.5, virtualKey::kShift, "Resize notes", {{4, 5, 60, 90}, {6, 4, 63, 80}}},
        {4.5, virtualKey::kControl, "Copy notes", {{4, 2, 60, 90}, {6, 1, 63, 80}, {7, 2, 62, 90}, {9, 1, 65, 80}}}};
    for (const auto& entry : cases) {
        Show({{4, 2, 60, 90}, {6, 1, 63, 80}}, {0, 1});
        Press(entry.from, 60);
        Move(entry.from + 1, 60);
        if (entry.during != 0) gestures.KeyDown(entry.during);
        Move(entry.from + 3, 62);
        gestures.Release(0, 0);
        if (entry.during != 0) gestures.KeyUp(entry.during);
        EXPECT_EQ(Notes(), entry.notes) << entry.name;
        EXPECT_EQ(LastStep(), entry.name);
        EXPECT_EQ(Selection().size(), 2U);
        ExpectConsistent();
    }
    EXPECT_EQ(document.steps.size(), 4U) << "one step a drag";
    // A narrow item only moves, and there and back is no step.
    Show({{4, 0.4F, 60, 90}});
    EXPECT_EQ(gestures.CursorAt(XOf(4.3), YOf(60)), ERollCursor::kHand);
    Press(4.3, 60);
    Move(9, 64);
    Move(4.3, 60);
    Release();
    EXPECT_EQ(document.steps.size(), 4U);
    ExpectConsistent();
}

TEST_F(RollGesture, AnEdgeScrollsWhileADragIsHeldThere) {
    Show({{4, 2, 60, 90}});
    gestures.ScrollAtEdge();
    Press(4.2, 60);
    gestures.ScrollAtEdge();
    EXPECT_EQ(surface.moves, 0) << "a press is no drag";
    gestures.Move(900, 404 + 20);
    for (int tick = 0; tick < 10; ++tick) gestures.ScrollAtEdge();
    EXPECT_GT(view.time.Scroll(), 60);
    const int scrolled = view.KeyScroll();
    EXPECT_NEAR(Notes()[0].position, view.StepAt(900) - 0.2, 1) << "the note stays under the mouse";
    EXPECT_EQ(Notes()[0].key, view.KeyAt(424));
    gestures.Move(400, 200);
    gestures.ScrollAtEdge();
    EXPECT_EQ(view.KeyScroll(), scrolled);
    EXPECT_TRUE(document.isHeld) << "recording waits";
    Release();
    EXPECT_EQ(document.steps.size(), 1U);
    EXPECT_FALSE(document.isHeld);
    // A marquee keeps the corner where it began.
    view.time.ScrollTo(240);
    Press(4, 60, kRight);
    gestures.Move(10, 200);
    const double corner = view.StepAt(gestures.ShownMarquee()->x0);
    gestures.ScrollAtEdge();
    EXPECT_LT(view.time.Scroll(), 240);
    EXPECT_NEAR(view.StepAt(gestures.ShownMarquee()->x0), corner, 0.001);
    Release();
    ExpectConsistent();
}

TEST_F(RollGesture, EscapePutsEverythingBack) {
    Show({{4, 2, 60, 90}});
    const auto before = edit.State().pattern;
    for (const bool fresh : {false, true}) {
        Press(fresh ? 10 : 4.2, 60);
        Move(12, 64);
        EXPECT_NE(edit.State().pattern, before);
        gestures.KeyDown(virtualKey::kEscape);
        EXPECT_EQ(edit.State().pattern, before);
        EXPECT_TRUE(Selection().empty());
        Move(14, 66);
        Release();
        EXPECT_TRUE(document.steps.empty());
        ExpectConsistent();
    }
    // What is done stays done.
    Press(10, 60);
    Release();
    gestures.KeyDown(virtualKey::kEscape);
    EXPECT_EQ(Notes().size(), 2U);
    EXPECT_EQ(document.steps.size(), 1U);
}

TEST_F(RollGesture, ADoubleClickDeletesAndLeavesNoTraceOfAFreshNote) {
    Press(10, 60);
    Release();
    EXPECT_EQ(Notes().size(), 1U) << "seen and heard at once";
    gestures.DoubleClick(XOf(10), YOf(60));
    EXPECT_TRUE(Notes().empty());
    EXPECT_TRUE(document.steps.empty());
    ExpectConsistent();
    Show({{4, 2, 60, 90}, {8, 2, 60, 80}, {12, 2, 60, 80}}, {0, 1});
    gestures.DoubleClick(XOf(4.5), YOf(60));
    EXPECT_EQ(Notes(), (std::vector<Note>{{12, 2, 60, 80}})) << "every selected one";
    gestures.DoubleClick(XOf(12.5), YOf(60));
    EXPECT_TRUE(Notes().empty()) << "or the one under the mouse";
    EXPECT_EQ(document.steps.size(), 2U);
    // A wheel turn that still waits is no fresh note.
    Show({{4, 2, 60, 90}});
    gestures.Wheel({XOf(4.5), YOf(60), 1, false, false, true});
    gestures.DoubleClick(XOf(4.5), YOf(60));
    EXPECT_EQ(document.steps.size(), 4U);
    ExpectConsistent();
}

TEST_F(RollGesture, TheRightButtonSelectsMovesOrOpensTheMenu) {
    Show({{4, 2, 60, 90}, {8, 2, 62, 80}, {20, 1, 70, 70}});
    Press(3, 63, kRight);
    Move(8.5, 59);
    EXPECT_EQ(surface.cursor, ERollCursor::kCross);
    EXPECT_EQ(Selection(), (NoteSelection{0, 1})) << "shown at once";
    Release();
    gestures.KeyDown(virtualKey::kControl);
    Drag(19, 71, 22, 69, kRight);
    gestures.KeyUp(virtualKey::kControl);
    EXPECT_EQ(Selection(), (NoteSelection{0, 1, 2}));
    EXPECT_EQ(document.menus, 0);
    Drag(4.5, 60, 5.5, 60, kRight);
    EXPECT_EQ(LastStep(), "Move notes");
    EXPECT_EQ(Notes()[2].position, 21);
    Click(30, 50, kRight);
    EXPECT_EQ(document.menus, 1);
    EXPECT_TRUE(Selection().empty());
    gestures.KeyDown(virtualKey::kShift);
    Drag(3, 63, 6, 59);
    gestures.KeyUp(virtualKey::kShift);
    EXPECT_EQ(Selection(), NoteSelection{0}) << "Shift and the left button";
    EXPECT_EQ(document.steps.size(), 1U);
    ExpectConsistent();
}

TEST_F(RollGesture, TheWheelScrollsZoomsAndStresses) {
    Show({{4, 2, 60, 90}});
    gestures.Wheel({XOf(4.5), YOf(60), -1, false, false, false});
    EXPECT_EQ(view.KeyScroll(), 12 * 58);
    gestures.Wheel({300, 200, -2, true, false, false});
    EXPECT_EQ(view.time.Scroll(), 8 * 24);
    gestures.Wheel({300, 200, 1, false, true, false});
    EXPECT_EQ(view.time.StepWidth(), 48);
    gestures.Wheel({300, 200, -1, true, true, false});
    EXPECT_EQ(view.KeyZoom(), 6);
    EXPECT_EQ(surface.moves, 4);
    view.time.ScrollTo(0);
    gestures.Press(EMouseButton::kMiddle, 300, 200);
    gestures.Move(252, 200);
    Release();
    EXPECT_EQ(view.time.Scroll(), 48);
    EXPECT_TRUE(document.steps.empty());
    const auto box = view.BoxOf(Notes()[0]);
    for (int notch = 0; notch < 3; ++notch) {
        gestures.Wheel({static_cast<int>(box->left) + 4, static_cast<int>(box->top) + 2, 1, false, false, true});
    }
    edit.Settle();
    EXPECT_EQ(Notes()[0].velocity, 102);
    EXPECT_EQ(document.steps.size(), 1U) << "notches in a row are one step";
}

TEST_F(RollGesture, TheStripSoundsAndDragsTheLimits) {
    gestures.Press(kRight, 20, YOf(61));
    gestures.Release(20, YOf(61));
    EXPECT_EQ(document.rowOfMenu, 61);
    gestures.Press(kLeft, 10, YOf(60));
    gestures.Move(10, YOf(61));
    Release();
    ASSERT_EQ(document.heard.size(), 2U);
    EXPECT_EQ(document.heard[1].key, 61);
    document.limitIsArmed = true;
    gestures.Press(kLeft, 10, YOf(62));
    Release();
    EXPECT_EQ(document.takenKey, 62);
    EXPECT_EQ(document.heard.size(), 2U) << "the click was for the limit";
    options.lowerLimit = 50;
    gestures.Press(kLeft, 60, YOf(50) + 8);
    gestures.Move(60, YOf(53));
    EXPECT_EQ(document.lowerLimit, 53);
    EXPECT_FALSE(document.limitDone);
    gestures.KeyDown(virtualKey::kEscape);
    EXPECT_EQ(document.lowerLimit, 50);
    ExpectConsistent();
}

TEST_F(RollGesture, KeysHeldTogetherAreAChordAtTheCursorAndOneStep) {
    const auto play = [this](std::initializer_list<int> chord) {
        for (const int velocity : {90, 0}) {
            for (const int key : chord) keys.EnterStep(key, velocity);
        }
    };
    play({60, 64});
    play({62});
    EXPECT_EQ(Notes(), (std::vector<Note>{{0, 1, 60, 90}, {0, 1, 64, 90}, {1, 1, 62, 90}}));
    EXPECT_EQ(document.steps.size(), 2U);
    keys.EnterStep(70, 0);
    EXPECT_EQ(keys.ShownCursor()->step, 2) << "the end of a key that began elsewhere";
    for (int step = 2; step < 32; ++step) play({50});
    play({67});
    EXPECT_EQ(Notes().back(), (Note{0, 1, 67, 90})) << "from the end back to the beginning";
    ExpectConsistent();
}

TEST_F(RollGesture, EverythingWorksWithoutAMouse) {
    Key(virtualKey::kRight);
    Key(virtualKey::kReturn);
    ASSERT_EQ(Notes().size(), 1U);
    EXPECT_EQ(Notes()[0], (Note{0, 1, 60, 100}));
    Key(virtualKey::kUp);
    Key(virtualKey::kReturn);
    EXPECT_EQ(Notes()[1], (Note{1, 1, 61, 100})) << "the cursor goes on by itself";
    Key(virtualKey::kTab);
    EXPECT_EQ(Selection(), NoteSelection{0});
    Key(virtualKey::kTab);
    EXPECT_EQ(Selection(), NoteSelection{1});
    const std::size_t steps = document.steps.size();
    gestures.KeyDown(virtualKey::kControl);
    keys.KeyDown(virtualKey::kRight, gestures);
    keys.KeyDown(virtualKey::kRight, gestures);  // held
    keys.KeyUp(virtualKey::kRight, gestures);
    gestures.KeyUp(virtualKey::kControl);
    EXPECT_EQ(Notes()[1].position, 33) << "a bar each";
    EXPECT_EQ(document.steps.size(), steps + 1);
    gestures.KeyDown(virtualKey::kShift);
    Key(virtualKey::kLeft);
    gestures.KeyUp(virtualKey::kShift);
    EXPECT_NEAR(Notes()[1].position, 33 - 1.0F / 24, 1e-4F) << "a tick";
    gestures.KeyDown(virtualKey::kAlt);
    Key(virtualKey::kRight);
    gestures.KeyUp(virtualKey::kAlt);
    EXPECT_EQ(Notes()[1].length, 2);
    const struct {
        int key;
        const char* name;
    } letters[] = {
        {'G', "Quantise"}, {'H', "Humanise"}, {'D', "Duplicate notes"}, {'K', "Split notes"}, {'J', "Join notes"}};
    for (const auto& letter : letters) {
        Key(letter.key);
        EXPECT_NE(LastStep(), letter.name) << "bare letters are notes";
        gestures.KeyDown(virtualKey::kControl);
        Key(letter.key);
        gestures.KeyUp(virtualKey::kControl);
        EXPECT_EQ(LastStep(), letter.name);
    }
    Key(virtualKey::kDelete);
    EXPECT_EQ(LastStep(), "Delete notes");
    ExpectConsistent();
}

TEST_F(RollGesture, TheDrumViewSetsHitsOfOneStep) {
    const int drumKeys[] = {40, 60, 50};
    view.SetDrums(true);
    view.SetRows(CRowOrder(drumKeys));
    // Rows from below: 40, 60, 50, each 24 high.
    const auto click = [&](double step, int row) {
        const int x = 112 + static_cast<int>(step * 24);
        const int y = view.YOfRow(row) + 10;
        gestures.Press(kLeft, x, y);
        gestures.Release(x, y);
        edit.Settle();
    };
    Show({{4, 6, 60, 90}});
    click(6.5, 1);
    ASSERT_EQ(Notes().size(), 2U) << "a long note covers its step alone";
    EXPECT_EQ(Notes()[1], (Note{6, 1, 60, 100}));
    click(6.5, 2);
    EXPECT_EQ(Notes()[2].key, 50);
    click(4.5, 1);
    EXPECT_EQ(Selection(), NoteSelection{0});
    gestures.Press(kLeft, 20, view.YOfRow(0) + 5);
    Release();
    EXPECT_EQ(document.focused, 40);
    EXPECT_EQ(document.heard.back().key, 40);
    ExpectConsistent();
}

TEST_F(RollGesture, RowsStandByKeyByNameOrUsedFirst) {
    std::vector<std::string> names(kHighestKey + 1);
    names[36] = "Kick";
    names[38] = "Snare";
    names[42] = "Hat";
    KeySet shown;
    KeySet used;
    for (const int key : {36, 38, 42}) shown.set(static_cast<std::size_t>(key));
    used.set(38);
    const auto fromTop = [&](ERowOrder order) {
        const CRowOrder rows(CKeyRows(shown), order, names, used);
        return std::vector<int>{rows.KeyOf(2), rows.KeyOf(1), rows.KeyOf(0)};
    };
    EXPECT_EQ(fromTop(ERowOrder::kByKey), (std::vector<int>{42, 38, 36}));
    EXPECT_EQ(fromTop(ERowOrder::kByName), (std::vector<int>{42, 36, 38}));
    EXPECT_EQ(fromTop(ERowOrder::kUsedFirst), (std::vector<int>{38, 42, 36}));
}

TEST_F(RollGesture, TheVelocityLanePaintsAndMovesASelectionTogether) {
    CVelocityGestures lane(edit, view);
    lane.Resize(80);
    Show({{0, 1, 60, 20}, {4, 1, 60, 40}, {8, 1, 60, 60}});
    const auto y = [&](int velocity) { return static_cast<int>(lane.YOf(velocity) + 0.5); };
    lane.Press(XOf(0) + 3, y(100));
    lane.Move(XOf(8) + 3, y(100));
    lane.Release();
    for (const Note& note : Notes()) EXPECT_NEAR(note.velocity, 100, 1);
    ASSERT_EQ(document.steps.size(), 1U);
    Show({{0, 1, 60, 20}, {4, 1, 60, 40}, {8, 1, 60, 60}}, {0, 1});
    lane.Press(XOf(4) + 3, y(40));
    lane.Move(XOf(12), y(70));
    EXPECT_NEAR(Notes()[0].velocity, 50, 2);
    EXPECT_NEAR(Notes()[1].velocity, 70, 2);
    EXPECT_EQ(Notes()[2].velocity, 60);
    EXPECT_TRUE(lane.Cancel());
    EXPECT_EQ(Notes()[0].velocity, 20);
    EXPECT_EQ(document.steps.size(), 1U);
    ExpectConsistent();
}

// Whatever a hand does: steps lead back to the start and forth to the end, and no note is out of bounds.
TEST_F(RollGesture, RandomGesturesCanBeUndoneAndRedone) {
    std::mt19937 random(7);
    const auto pick = [&random](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    const int keysToPress[] = {virtualKey::kLeft,
                               virtualKey::kUp,
                               virtualKey::kDelete,
                               virtualKey::kReturn,
                               virtualKey::kTab,
                               virtualKey::kEscape,
                               'G',
                               'H',
                               'D',
                               'J',
                               'K',
                               virtualKey::kDown,
                               virtualKey::kPlus};
    const auto start = document.now;
    for (int round = 0; round < 10'000; ++round) {
        if (Notes().size() > 150) Show({});
        const int modifiers[] = {virtualKey::kShift, virtualKey::kControl, virtualKey::kAlt};
        const int modifier = modifiers[pick(3)];
        if (pick(3) == 0) gestures.KeyDown(modifier);
        switch (pick(4)) {
            case 0:
                Key(keysToPress[pick(13)]);
                break;
            case 1:
                gestures.DoubleClick(64 + pick(800), 24 + pick(380));
                break;
            default: {
                gestures.Press(pick(3) == 0 ? kRight : kLeft, pick(888), pick(408));
                for (int move = pick(3); move > 0; --move) gestures.Move(pick(1200) - 100, pick(600) - 100);
                if (pick(4) == 0) gestures.KeyDown(modifier);
                if (pick(12) == 0) gestures.KeyDown(virtualKey::kEscape);
                gestures.Release(pick(888), pick(408));
            }
        }
        for (const int key : modifiers) gestures.KeyUp(key);
        if (pick(5) == 0) continue;  // what waits is settled by the next gesture
        edit.Settle();
        ASSERT_FALSE(document.before);
        ASSERT_TRUE(document.IsSilent());
        for (const Note& note : Notes()) ASSERT_EQ(note, Repaired(note));
    }
    edit.Settle();
    for (std::size_t step = 1; step < document.steps.size(); ++step) {
        const auto& from = document.steps[step].from;
        const bool isShown = from->Notes().empty();  // emptied by the test
        ASSERT_TRUE(isShown || from == document.steps[step - 1].to) << step;
    }
    EXPECT_EQ(document.steps.front().from, start);
    EXPECT_EQ(document.steps.back().to, document.now);
}

}  // namespace quib
