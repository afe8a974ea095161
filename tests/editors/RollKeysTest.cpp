// SPDX-License-Identifier: GPL-3.0-or-later
// Keys, drums and the lane of velocities.
#include "editors/RollGestureFixture.h"
#include "editors/pianoroll/CVelocityGestures.h"

namespace quib {

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

}  // namespace quib
