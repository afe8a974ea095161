// SPDX-License-Identifier: GPL-3.0-or-later
// The piano roll's window over a real project, with the mouse and keys of a user.
#include "editors/pianoroll/CWinControlPianoRoll.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>
#include <random>

#include "app/CSettingsForControls.h"
#include "app/console/PatternMenu.h"
#include "controls/VirtualKeys.h"
#include "document/DocumentFixture.h"
#include "editors/CToolWindows.h"
#include "editors/automation/CEventCtrl.h"

namespace quib {
namespace {

class PianoRollWindowTest : public DocumentTest {
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
    void Click(QPoint at, Qt::KeyboardModifiers keys = {}) { QTest::mouseClick(window, Qt::LeftButton, keys, at); }
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

TEST_F(PianoRollWindowTest, ALaneOfAutomationStandsInPlaceOfTheVelocitiesAndSharesTheGrid) {
    for (int step = 0; step < 2; ++step) Click(Cell(4 * step, 60));
    const LaneKey level = {ELaneGroup::kMix, 0};
    CEventCtrl& curve = window->Curve();
    EXPECT_FALSE(curve.IsVisible());
    window->ChooseLane(level);
    ASSERT_TRUE(curve.IsVisible());
    const auto points = [&]() -> std::size_t {
        const PointList* const found = At(0)->mixLanes.ForEdit()->Find(0, 0);
        return found != nullptr ? found->size() : 0;
    };
    workstation->Changes().Settle();
    const int before = Steps();
    const auto at = [&](double step) {
        return QPoint(curve.X() + static_cast<int>(curve.View().XOf(step)), curve.Y() + curve.Height() / 2);
    };
    EXPECT_EQ(at(4).x(), static_cast<int>(window->Roll().view.XOf(4)));
    Click(at(4));
    Click(at(8));
    workstation->Changes().Settle();
    EXPECT_EQ(points(), 2U);
    EXPECT_EQ(Steps(), before + 2);
    EXPECT_EQ(window->Lanes().Used().size(), 1U);
    // The control that was pressed last has the keys and the commands.
    QTest::keyClick(window, Qt::Key_Right);
    EXPECT_EQ(At(0)->mixLanes.ForEdit()->Find(0, 0)->back().x, 9);
    QTest::keyClick(window, Qt::Key_Delete);
    EXPECT_EQ(points(), 1U);
    EXPECT_EQ(Notes().size(), 2U);
    Click(Cell(0, 60));
    QTest::keyClick(window, Qt::Key_Delete);
    EXPECT_EQ(points(), 1U);
    EXPECT_EQ(Notes().size(), 1U);
    while (Steps() > before) workstation->Changes().Undo();
    EXPECT_EQ(points(), 0U);
    const int zoom = curve.View().time.StepWidth();
    window->ZoomTime(true);
    EXPECT_EQ(curve.View().time.StepWidth(), 2 * zoom);
    window->Retranslate();
    EXPECT_TRUE(window->Curve().IsVisible());
    window->ChooseLane({});
    EXPECT_FALSE(window->Curve().IsVisible());
}

TEST_F(PianoRollWindowTest, OddNotesOfAFileAreShownAsTheyPlayAndStayWhereNobodyTouchesThem) {
    // Before the start, without length, overlapping, silent, off every grid, beyond the end.
    const std::vector<Note> odd = {{-3, 1, 60, 90}, {0, 4, 60, 100},      {2, 4, 60, 80}, {8, 0, 64, 90},
                                   {9, 1, 64, 0},   {2.3333F, 0, 60, 70}, {2, 4, 60, 80}, {40, 2, 62, 90}};
    CPatternEdits edits(*workstation);
    workstation->Contents().SetPattern(At(0)->Id(), 0, std::make_shared<const CPattern>(16, odd), "x");
    edits.Edit(EEdit::kCopy);
    workstation->Contents().SelectPattern(0, 1);
    edits.Edit(EEdit::kPaste);
    const std::vector<Note> read = Notes(1);
    ASSERT_EQ(read.size(), odd.size());
    CPianoRollCtrlEx& roll = window->Roll();
    roll.view.time.SetStepWidth(12, 0);
    const CNoteIndex& index = roll.Edit().Index();
    NoteSelection shown = roll.view.NotesBetween(index, 0, -5000, 5000, 5000);
    std::erase_if(shown, [&](std::uint32_t note) { return read[note].velocity <= 0 || read[note].position >= 16; });
    NoteSelection played;
    for (int step = 0; step < 16; ++step) {
        for (const std::uint32_t note : roll.State().pattern->NotesOfStep(step)) {
            if (read[note].velocity > 0) played.push_back(note);
        }
    }
    std::sort(played.begin(), played.end());
    EXPECT_EQ(shown, played);
    QTest::mousePress(window, Qt::LeftButton, {}, Cell(8, 64) - QPoint(5, 0));
    QTest::mouseMove(window, Cell(8, 66));
    QTest::mouseRelease(window, Qt::LeftButton, {}, Cell(8, 66));
    std::vector<Note> wanted = read;
    ASSERT_EQ(Notes(1).size(), wanted.size());
    wanted[3] = Notes(1)[3];
    EXPECT_EQ(wanted[3].key, 66);
    EXPECT_GT(wanted[3].length, 0) << "what is edited fits";
    EXPECT_EQ(Notes(1), wanted) << "what is not touched stays as it was";
}

// Whatever hands do: undo leads back to the start and redo forth to the end, and no note is out of bounds.
TEST_F(PianoRollWindowTest, TenThousandRandomGesturesAreUndoneAndRedone) {
    std::mt19937 random(7);
    const auto pick = [&random](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    CPianoRollCtrlEx& roll = window->Roll();
    const int modifiers[] = {virtualKey::kShift, virtualKey::kControl, virtualKey::kAlt};
    const int others[] = {virtualKey::kLeft,
                          virtualKey::kUp,
                          virtualKey::kDelete,
                          virtualKey::kReturn,
                          virtualKey::kTab,
                          virtualKey::kPlus,
                          virtualKey::kDown,
                          virtualKey::kEscape,
                          'G',
                          'H',
                          'D',
                          'J',
                          'K'};
    const auto place = [&] { return QPoint(roll.X() + pick(1000) - 60, roll.Y() + pick(500) - 60); };
    const auto gesture = [&] {
        const int modifier = modifiers[pick(3)];
        if (pick(3) == 0) roll.OnKeyDown(modifier);
        const QPoint from = place();
        if (const int kind = pick(4); kind == 0) {
            const int key = others[pick(13)];
            roll.OnKeyDown(key);
            roll.OnKeyUp(key);
        } else if (kind == 1) {
            roll.OnDoubleClick(from.x(), from.y());
        } else {
            // A length or a menu is not what this is about.
            if (from.y() - roll.Y() < PianoRollView::kHeaderHeight || from.x() < roll.view.GridLeft()) return;
            const bool isRight = pick(3) == 0;
            roll.OnLButtonDown(from.x(), from.y(), isRight ? 1 : 0);
            for (int move = pick(3) + (isRight ? 1 : 0); move > 0; --move) {
                const QPoint to = place();
                roll.OnMouseMove(to.x(), to.y());
            }
            if (pick(4) == 0) roll.OnKeyDown(modifier);
            if (isRight || pick(12) == 0) roll.OnKeyDown(virtualKey::kEscape);
            const QPoint to = place();
            roll.OnLButtonUp(to.x(), to.y(), 0);
        }
        for (const int key : modifiers) roll.OnKeyUp(key);
    };
    QUndoStack& undo = workstation->Changes().Steps();
    int steps = 0;
    for (int batch = 0; batch < 100; ++batch) {
        if (Notes().size() > 150)
            workstation->Contents().SetPattern(At(0)->Id(), 0, std::make_shared<CPattern>(32), "x");
        undo.clear();
        const std::vector<Note> start = Notes();
        for (int number = 0; number < 100; ++number) gesture();
        workstation->Changes().Settle();
        const std::vector<Note> end = Notes();
        for (const Note& note : end) ASSERT_EQ(note, Repaired(note));
        steps += undo.count();
        while (undo.canUndo()) workstation->Changes().Undo();
        ASSERT_EQ(Notes(), start) << batch;
        while (undo.canRedo()) workstation->Changes().Redo();
        ASSERT_EQ(Notes(), end) << batch;
    }
    EXPECT_GT(steps, 2000);
}

TEST_F(PianoRollWindowTest, HiddenItDrawsNothingAndFollowsNothing) {
    Click(Cell(0, 60));
    window->hide();
    QCoreApplication::processEvents();
    const qint64 painted = window->PaintedPixels();
    const auto shown = window->Roll().State().pattern;
    workstation->Transport().Play();
    workstation->Contents().SetPattern(
        At(0)->Id(), 0, std::make_shared<const CPattern>(16, std::vector<Note>(10'000, Note{1, 1, 60, 90})), "x");
    for (int tick = 0; tick < 20; ++tick) tools.FollowEngine();
    QTest::qWait(60);
    EXPECT_EQ(window->PaintedPixels(), painted);
    EXPECT_EQ(window->Roll().State().pattern, shown);
    workstation->Transport().Stop();
    window->show();
    EXPECT_EQ(window->Roll().State().Notes().size(), 10'000U);
}

}  // namespace
}  // namespace quib
