// SPDX-License-Identifier: GPL-3.0-or-later
// The piano roll's window over a real project, with the mouse and keys of a user.
#include "editors/pianoroll/CWinControlPianoRoll.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

#include "app/AppFixture.h"
#include "app/CSettingsForControls.h"
#include "app/console/PatternMenu.h"
#include "editors/CToolWindows.h"

namespace quib {
namespace {

class PianoRollWindowTest : public AppTest {
protected:
    PianoRollWindowTest() {
        AddSynth();
        window = static_cast<CWinControlPianoRoll*>(tools.Open(ETool::kPianoRoll));
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window));
    }
    std::vector<Note> Notes(int pattern = 0) const {
        return workstation->Stack()
            .Instrument(workstation->Selection().CurrentIndex())
            ->patterns[static_cast<std::size_t>(pattern)]
            .ForEdit()
            ->Notes();
    }
    // The middle of the cell of a step and a key.
    QPoint Cell(double step, int key) const {
        const PianoRollView& view = window->Roll().view;
        const CControl& roll = window->Roll();
        return {roll.X() + static_cast<int>(view.XOf(step + 0.5)), roll.Y() + view.FootOf(key) - view.RowHeight() / 2};
    }
    void Click(QPoint at, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(window, Qt::LeftButton, keys, at);
        QTest::qWait(30);
    }
    int Steps() const { return workstation->Changes().Steps().index(); }

    CSettingsForControls controlSettings{settings};
    CToolWindows tools{ToolContext{*workstation, controlSettings}, nullptr};
    CWinControlPianoRoll* window = nullptr;
};

TEST_F(PianoRollWindowTest, ARiffIsWrittenAndEachGestureIsOneStepThatUndoTakesBack) {
    const int before = Steps();
    for (int step = 0; step < 4; ++step) Click(Cell(2 * step, 60 + step));
    ASSERT_EQ(Notes().size(), 4U);
    EXPECT_EQ(Notes()[3].position, 6);
    EXPECT_EQ(Notes()[3].key, 63);
    workstation->Changes().Undo();
    EXPECT_EQ(Notes().size(), 3U) << "a click that waited for a second one is a step by now";
    workstation->Changes().Redo();
    EXPECT_EQ(Steps(), before + 4);
    const QPoint from = Cell(0, 60);
    QTest::mousePress(window, Qt::LeftButton, {}, from);
    for (int part = 1; part <= 6; ++part) QTest::mouseMove(window, from + QPoint(8 * part, 0));
    EXPECT_EQ(Notes()[0].position, 2) << "heard while it moves";
    QTest::mouseRelease(window, Qt::LeftButton, {}, from + QPoint(48, 0));
    EXPECT_EQ(Steps(), before + 5);
    QTest::mousePress(window, Qt::LeftButton, {}, Cell(2, 60));
    QTest::mouseMove(window, Cell(9, 70));
    QTest::keyClick(window, Qt::Key_Escape);
    QTest::mouseRelease(window, Qt::LeftButton, {}, Cell(9, 70));
    EXPECT_EQ(Notes()[0].position, 2);
    EXPECT_EQ(Steps(), before + 5);
    while (workstation->Changes().Steps().index() > before) workstation->Changes().Undo();
    EXPECT_TRUE(Notes().empty());
}

TEST_F(PianoRollWindowTest, TheEditCommandsActOnTheSelectionWhichComesBackWithUndo) {
    for (int step = 0; step < 3; ++step) Click(Cell(4 * step, 60));
    EXPECT_FALSE(window->CanEdit(EEdit::kCopy)) << "a new note is not selected";
    window->Edit(EEdit::kSelectAll);
    ASSERT_TRUE(window->CanEdit(EEdit::kDelete));
    window->Edit(EEdit::kCopy);
    window->Edit(EEdit::kDelete);
    EXPECT_TRUE(Notes().empty());
    workstation->Changes().Undo();
    ASSERT_EQ(Notes().size(), 3U);
    EXPECT_EQ(window->Roll().State().selection.size(), 3U);
    workstation->Contents().SelectPattern(0, 1);
    ASSERT_TRUE(window->CanEdit(EEdit::kPaste));
    window->Edit(EEdit::kPaste);
    EXPECT_EQ(Notes(1), Notes(0)) << "pasted where it was copied";
    EXPECT_TRUE(window->windowTitle().endsWith("Pattern 2"));
    QTest::keyClick(window, Qt::Key_Up);
    EXPECT_EQ(Notes(1)[0].key, 61);
    EXPECT_EQ(Notes(0)[0].key, 60);
    QSignalSpy messages(workstation.get(), &CWorkstation::Message);
    const int steps = Steps();
    for (const char* const foreign : {"", "PATTERNS of speech; and more", "PATTERN_NOTES;0;"}) {
        QGuiApplication::clipboard()->setText(QLatin1String(foreign));
        window->Edit(EEdit::kPaste);
        CPatternEdits(*workstation).Edit(EEdit::kPaste);
    }
    EXPECT_EQ(messages.count(), 6);
    EXPECT_EQ(Steps(), steps) << "foreign text is refused";
}

TEST_F(PianoRollWindowTest, AWholePatternGoesThroughTheClipboardIntoAnotherInstrumentAndProject) {
    CPatternEdits edits(*workstation);
    workstation->Contents().SetPattern(
        At(0)->Id(), 0, std::make_shared<const CPattern>(24, std::vector<Note>{{1.25F, 2, 48, 80}}), "x");
    const CEventLanes points = CEventLanes().With(0, 1, {{2, 0.5F}});
    for (const ELanes family : {ELanes::kMidi, ELanes::kMix, ELanes::kPlugin})
        workstation->Contents().SetLanes(At(0)->Id(), family, std::make_shared<const CEventLanes>(points), "x");
    edits.Edit(EEdit::kCopy);
    workstation->Session().NewProject();
    AddSynth();
    workstation->Contents().SelectPattern(0, 5);
    const int before = Steps();
    edits.Edit(EEdit::kPaste);
    EXPECT_EQ(Steps(), before + 1);
    EXPECT_EQ(Notes(5), (std::vector<Note>{{1.25F, 2, 48, 80}}));
    EXPECT_EQ(At(0)->patterns[5].ForEdit()->StepCount(), 24);
    for (const ELanes family : {ELanes::kMidi, ELanes::kMix, ELanes::kPlugin}) {
        const auto lanes = workstation->Contents().LanesPlace(At(0), family).target->ForEdit();
        ASSERT_NE(lanes->Find(5, 1), nullptr) << static_cast<int>(family);
        EXPECT_EQ(*lanes->Find(5, 1), *points.Find(0, 1));
    }
    QString error;
    ASSERT_GE(workstation->Stack().AddInstrument("QUIB drums", error), 0) << error.toStdString();
    edits.Edit(EEdit::kPaste);
    EXPECT_NE(At(1)->midiLanes.ForEdit()->Find(0, 1), nullptr);
    EXPECT_EQ(workstation->Contents().LanesPlace(At(1), ELanes::kPlugin).target->ForEdit()->Find(0, 1), nullptr)
        << "the parameters of another plug-in are others";
    QTest::keyClick(window, Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Notes()[0].position, 2.25F);
    QTest::keyClick(window, Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Notes().size(), 2U);
    QTest::keyClick(window, Qt::Key_Delete, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(Notes().empty());
}

TEST_F(PianoRollWindowTest, ItFollowsOtherHandsAndShowsTheSoundsOfADrumMachine) {
    Click(Cell(0, 60));
    const std::uint32_t id = At(0)->Id();
    const auto other = std::make_shared<const CPattern>(8, std::vector<Note>{{3, 1, 50, 90}});
    workstation->Contents().SetPattern(id, 0, other, "Other hand");
    EXPECT_EQ(window->Roll().State().pattern, other);
    EXPECT_FALSE(window->Roll().view.IsDrums());
    QString error;
    ASSERT_GE(workstation->Stack().AddInstrument("QUIB drums", error), 0) << error.toStdString();
    EXPECT_TRUE(window->Roll().view.IsDrums());
    EXPECT_EQ(window->Roll().options.rowNames[36], "Kick");
    EXPECT_EQ(window->Roll().view.Rows().RowOf(0), -1) << "keys without a sound have no row";
    Click(Cell(4, 38));
    ASSERT_EQ(Notes().size(), 1U);
    EXPECT_EQ(Notes()[0].key, 38);
    workstation->Session().NewProject();
    EXPECT_TRUE(window->Roll().State().Notes().empty());
    Click(window->rect().center());
    EXPECT_EQ(workstation->Changes().Steps().count(), 0) << "without an instrument a click does nothing";
}

}  // namespace
}  // namespace quib
