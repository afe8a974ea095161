// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/RollGestureFixture.h"

namespace quib {

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

}  // namespace quib
