// SPDX-License-Identifier: GPL-3.0-or-later
// The song in the console under mouse and keys, and performances that are recorded into it.
#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <random>
#include <tuple>

#include "app/console/CSongModeCtrl.h"
#include "app/console/CWinControlMain.h"
#include "controls/CNoSettings.h"
#include "controls/VirtualKeys.h"
#include "document/DocumentFixture.h"
#include "editors/playlist/CSongPane.h"

namespace quib {
namespace {

// Two instruments with a note in each of their first twelve patterns of 16 steps; 2 pixels a step.
class SongTest : public DocumentTest {
protected:
    SongTest() {
        for (int index = 0; index < 2; ++index) {
            AddSynth();
            for (std::size_t pattern = 0; pattern < 12; ++pattern) {
                At(index)->patterns[pattern].Prepare(
                    std::make_shared<const CPattern>(16, std::vector<Note>{{0, 1, 60, 100}}));
            }
        }
        workstation->Selection().SetCurrent(0);
        SetSongMode(*workstation, true);
        console = std::make_unique<CWinControlMain>(noSettings, *workstation, ConsoleActions{});
        console->resize(1366, 728);
        console->show();
        console->ShowSong(true, false);
        QApplication::processEvents();
        console->setFocus();
    }
    CPlayListCtrlEx& Lane(int index) { return *console->Song().Lane(index); }
    const Playlist& Items(int index) { return *At(index)->playlist.ForEdit(); }
    // A place of a lane; bars from 1.
    QPoint Place(int lane, double bar, int dx = 0) {
        const double x = console->Song().View().time.XOf((bar - 1) * 16);
        return {Lane(lane).X() + static_cast<int>(x) + dx, Lane(lane).Y() + 12};
    }
    QPoint RulerPlace(int step, int dx, bool upper) {
        CPlayListCtrlEx& ruler = console->Song().Ruler();
        return {ruler.X() + static_cast<int>(console->Song().View().time.XOf(step)) + dx,
                ruler.Y() + (upper ? 10 : 32)};
    }
    void Drag(QPoint from, QPoint to, Qt::KeyboardModifiers keys = {}, Qt::MouseButton button = Qt::LeftButton) {
        ++presses;
        QTest::mousePress(console.get(), button, keys, from);
        if (to != from) {
            QMouseEvent move(QEvent::MouseMove, to, console->mapToGlobal(to), Qt::NoButton, button, keys);
            QApplication::sendEvent(console.get(), &move);
        }
        QTest::mouseRelease(console.get(), button, keys, to);
    }
    void Click(QPoint at, Qt::KeyboardModifiers keys = {}) { Drag(at, at, keys); }
    void Key(Qt::Key key, Qt::KeyboardModifiers keys = {}) { QTest::keyClick(console.get(), key, keys); }
    StepRange Loop() { return workstation->Song().Loop(); }

    CNoSettings noSettings;
    std::unique_ptr<CWinControlMain> console;
    int presses = 0;
};

TEST_F(SongTest, ASongOfSixteenBarsTakesTwoPressesAndALoopOne) {
    Drag(Place(0, 1, 3), Place(0, 17, -3));
    Drag(Place(1, 5, 3), Place(1, 17, -3));
    EXPECT_LE(presses, 4);
    EXPECT_EQ(Items(0), (Playlist{{0, 0, 1}, {15, 256, 0}}));
    EXPECT_EQ(Items(1), (Playlist{{0, 64, 1}, {15, 256, 0}}));
    EXPECT_EQ(workstation->Selection().CurrentIndex(), 1) << "a press makes the instrument current";
    EXPECT_TRUE(Lane(0).Edit().State().selection.empty());
    presses = 0;
    Drag(RulerPlace(4 * 16, 2, true), RulerPlace(8 * 16, -2, true));
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(Loop().first, 64);
    EXPECT_EQ(Loop().end, 128);
    EXPECT_TRUE(workstation->Song().IsLoopOn());
    for (int step = 0; step < 3; ++step) workstation->Changes().Undo();
    EXPECT_TRUE(Items(0).empty() && Items(1).empty() && Loop().IsEmpty());
}

TEST_F(SongTest, EightBarsBecomeASongOfSixtyFourInTwentyPresses) {
    // Eight bars of each, then copied by Ctrl+D, then other patterns for the parts.
    Drag(Place(0, 1, 3), Place(0, 9, -3));
    Drag(Place(1, 1, 3), Place(1, 9, -3));
    for (const int lane : {0, 1}) {
        Click(Place(lane, 2, 3));
        for (int copy = 1; copy < 8; ++copy) Key(Qt::Key_D, Qt::ControlModifier);
    }
    for (const int part : {2, 4, 6}) {
        Click(Place(0, part * 8 + 2));
        Key(Qt::Key_Up);
    }
    EXPECT_LE(presses, 20);
    EXPECT_EQ(workstation->Song().Steps() / 16, 64 + 1) << "with the end mark's pattern";
    const auto at = [this](int bar) { return PlaylistPlaceAt(Items(0), PatternLengthsForEdit(*At(0)), bar * 16); };
    for (int bar = 0; bar < 64; ++bar) ASSERT_EQ(at(bar).step, 0);
    EXPECT_EQ(Items(0)[static_cast<std::size_t>(at(17).entry)].pattern, 1);
}

TEST_F(SongTest, TheLoopIsTakenByItsPixels) {
    const auto set = [this](int first, int end) {
        workstation->Audio().settings.loopStart.Set(first);
        workstation->Audio().settings.loopEnd.Set(end);
        workstation->Audio().settings.loopOn.Set(1);
        workstation->Changes().Tell({EChange::kValue});
    };
    const struct {
        const char* what;
        int first, end, at, dx, move;
        StepRange wanted;
    } cases[] = {
        {"3 pixels left: the start", 64, 128, 64, -3, 64, {96, 128}},
        {"3 pixels left of the end: the end", 64, 128, 128, -3, 64, {64, 160}},
        {"between: the whole", 64, 128, 96, 0, 64, {96, 160}},
        {"8 pixels wide: always the whole", 64, 68, 64, 0, 64, {96, 100}},
        {"a click outside", 64, 128, 64, -5, 0, {64, 128}},
    };
    for (const auto& one : cases) {
        set(one.first, one.end);
        Drag(RulerPlace(one.at, one.dx, true), RulerPlace(one.at, one.dx + one.move, true));
        EXPECT_EQ(Loop().first, one.wanted.first) << one.what;
        EXPECT_EQ(Loop().end, one.wanted.end) << one.what;
    }
    set(64, 128);
    SetSongMode(*workstation, false);
    Drag(RulerPlace(96, 0, true), RulerPlace(96, 64, true));
    EXPECT_EQ(Loop().first, 64) << "only in song mode";
    Drag(RulerPlace(0, 2, false), RulerPlace(32, -2, false), Qt::ShiftModifier);
    EXPECT_EQ(Loop().end, 32);
}

TEST_F(SongTest, ALoopThatIsSwitchedOnWithoutARegionTakesTheSelectionElseTheSong) {
    Drag(Place(0, 1, 3), Place(0, 9, -3));
    Click(Place(1, 3, 3));
    workstation->Song().ToggleLoop();
    EXPECT_TRUE(workstation->Song().IsLoopOn());
    EXPECT_EQ(Loop().first, 32);
    EXPECT_EQ(Loop().end, 48);
    workstation->Changes().Undo();
    Key(Qt::Key_Escape);
    workstation->Song().ToggleLoop();
    EXPECT_EQ(Loop().first, 0);
    EXPECT_EQ(Loop().end, workstation->Song().Steps());
}

TEST_F(SongTest, KeysChooseThePatternOfTheSelectionAndDeleteHeldRemoves) {
    Click(Place(0, 1, 3));
    Click(Place(0, 2, 3));
    Click(Place(0, 1, 3), Qt::ControlModifier);
    ASSERT_EQ(Lane(0).Edit().State().selection.size(), 2U);
    const auto patterns = [this] { return std::pair{Items(0)[0].pattern, Items(0)[1].pattern}; };
    using Pair = std::pair<int, int>;
    Key(Qt::Key_Down);
    EXPECT_EQ(patterns(), (Pair{0, 0})) << "no lower than the first";
    Key(Qt::Key_5, Qt::KeypadModifier);
    EXPECT_EQ(patterns(), (Pair{4, 4}));
    Key(Qt::Key_0, Qt::KeypadModifier);
    EXPECT_EQ(patterns(), (Pair{4, 4}));
    for (int press = 0; press < 14; ++press) Key(Qt::Key_Up);
    EXPECT_EQ(patterns(), (Pair{15, 15}));
    Key(Qt::Key_Escape);
    EXPECT_TRUE(Lane(0).Edit().State().selection.empty());

    QTest::keyPress(console.get(), Qt::Key_Delete);
    Drag(Place(0, 1, 3), Place(0, 2, 3));
    QTest::keyRelease(console.get(), Qt::Key_Delete);
    EXPECT_TRUE(Items(0).empty());
    workstation->Changes().Undo();
    EXPECT_EQ(Items(0).size(), 2U) << "a sweep is one step";
    Click(Place(0, 1, 3));
    Key(Qt::Key_Delete);
    EXPECT_EQ(Items(0).size(), 1U) << "a tap removes the selection";
}

TEST_F(SongTest, ItemsMoveCopyResizeAndEscapeLeavesNoStep) {
    Click(Place(0, 1, 3));
    const int before = Steps().index();
    Drag(Place(0, 1, 5), Place(0, 3, 5));
    EXPECT_EQ(Items(0), (Playlist{{0, 32, 0}}));
    Drag(Place(0, 4, -2), Place(0, 6, -2));
    EXPECT_EQ(Items(0), (Playlist{{0, 32, 1}, {15, 80, 0}})) << "the right end repeats";
    EXPECT_EQ(Steps().index(), before + 2);
    QTest::mousePress(console.get(), Qt::LeftButton, {}, Place(0, 3, 5));
    QMouseEvent move(QEvent::MouseMove, Place(0, 8), console->mapToGlobal(Place(0, 8)), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(console.get(), &move);
    EXPECT_NE(Items(0)[0].start, 32) << "heard while it moves";
    Key(Qt::Key_Escape);
    QTest::mouseRelease(console.get(), Qt::LeftButton, {}, Place(0, 8));
    EXPECT_EQ(Items(0)[0].start, 32);
    EXPECT_EQ(Steps().index(), before + 2);
}

TEST_F(SongTest, RandomGesturesAreUndoneToTheStartAndRedoneToTheEnd) {
    class CSurface : public IPlaylistSurface {
        void SetCursor(ESongCursor /*cursor*/) override {}
        void LaneChanged() override {}
        void SelectionCleared() override {}
        void EndRefused() override {}
        void ShowMenu() override {}
        void ScrollBy(int /*pixels*/) override {}
    } surface;
    std::mt19937 draw(5);
    CPlaylistEdit& edit = Lane(0).Edit();
    CPlaylistGestures gestures(edit, console->Song().View(), surface);
    CSong& song = workstation->Song();
    const auto all = [&] {
        return std::tuple(Items(0), Items(1), song.Markers(), song.Loop().first, song.Loop().end, song.IsLoopOn());
    };
    const auto ofTheWhole = [&](unsigned kind) {
        const int step = static_cast<int>(draw() % 300);
        const int length = 1 + static_cast<int>(draw() % 64);
        QString said;
        if (kind == 0) song.InsertTime(step, length);
        if (kind == 1) song.DeleteTime({step, step + length});
        if (kind == 2) song.DoubleSection({step, step + length});
        if (kind == 3) song.SetMarker(step, QString::number(step));
        if (kind == 4) song.ToggleLoop();
        if (kind == 5) song.MoveToInstrument(At(0), At(1), edit.State(), length - 32, draw() % 2 == 0, said);
        if (kind == 6) song.MakeUnique(At(0), edit.State());
        for (const int lane : {0, 1}) Lane(lane).Edit().Refresh();
    };
    // In parts that the list of steps has room for.
    for (int part = 0; part < 30; ++part) {
        workstation->Changes().Clear();
        const auto start = all();
        for (int round = 0; round < 60; ++round) {
            gestures.currentPattern = static_cast<int>(draw() % 12);
            gestures.SetDeleteHeld(draw() % 10 == 0);
            gestures.SetModifiers(draw() % 6 == 0, draw() % 6 == 0, draw() % 4 == 0);
            gestures.Press(static_cast<int>(draw() % 2), static_cast<int>(draw() % 900));
            for (int move = 0; move < 3; ++move) {
                gestures.Move(static_cast<int>(draw() % 1000));
                if (draw() % 8 == 0) gestures.SetModifiers(draw() % 2 == 0, draw() % 2 == 0, false);
            }
            draw() % 10 == 0 ? gestures.Cancel() : gestures.Release(300);
            ofTheWhole(static_cast<unsigned>(draw() % 20));
        }
        ASSERT_GT(Steps().index(), 10);
        const auto end = all();
        while (Steps().canUndo()) workstation->Changes().Undo();
        ASSERT_EQ(all(), start);
        while (Steps().canRedo()) workstation->Changes().Redo();
        ASSERT_EQ(all(), end);
    }
}

TEST_F(SongTest, ItemsGoToAnotherInstrumentWithTheirPatterns) {
    const auto put = [this](int index, std::size_t pattern, int steps, std::vector<Note> notes) {
        At(index)->patterns[pattern].Prepare(std::make_shared<const CPattern>(steps, std::move(notes)));
        workstation->Changes().Tell({EChange::kPattern, At(index)->Id()});
    };
    put(0, 1, 32, {{3, 1, 64, 90}});
    Drag(Place(0, 1, 3), Place(0, 5, -3));
    Lane(0).SetCurrentPattern(1);
    Drag(Place(0, 9, 3), Place(0, 13, -3));
    const Playlist before = Items(0);
    ASSERT_EQ(before, (Playlist{{0, 0, 1}, {15, 64, 0}, {1, 128, 1}, {15, 192, 0}}));
    const int steps = Steps().index();
    // Pattern 1 is there already; pattern 2 is not, and comes into the first free place.
    Drag(Place(0, 1, 5), Place(1, 2, 5));
    EXPECT_EQ(Items(0), (Playlist{{1, 128, 1}, {15, 192, 0}}));
    EXPECT_EQ(Items(1), (Playlist{{0, 16, 1}, {15, 80, 0}}));
    Drag(Place(0, 9, 5), Place(1, 9, 5));
    EXPECT_TRUE(Items(0).empty());
    EXPECT_EQ(Items(1), (Playlist{{0, 16, 1}, {15, 80, 0}, {12, 128, 1}, {15, 192, 0}}));
    EXPECT_EQ(At(1)->patterns[12].ForEdit()->Notes(), (std::vector<Note>{{3, 1, 64, 90}}));
    EXPECT_EQ(At(1)->patterns[12].ForEdit()->LoopLength(), 32);
    EXPECT_EQ(Lane(1).Edit().State().selection, (PlaylistSelection{2}));
    EXPECT_EQ(Steps().index(), steps + 2) << "with its pattern one step";
    workstation->Changes().Undo();
    workstation->Changes().Undo();
    EXPECT_EQ(Items(0), before);
    EXPECT_TRUE(Items(1).empty() && At(1)->patterns[12].ForEdit()->Notes().empty());
    // Without a free pattern nothing goes, and the reason is told.
    for (std::size_t pattern = 12; pattern < 16; ++pattern) put(1, pattern, 16, {{1, 1, 70, 90}});
    QString said;
    EXPECT_FALSE(workstation->Song().MoveToInstrument(At(0), At(1), {At(0)->playlist.ForEdit(), {2}}, 0, false, said));
    EXPECT_TRUE(said.contains(QLatin1String("no free pattern"))) << said.toStdString();
    EXPECT_EQ(Items(0), before);
}

TEST_F(SongTest, NotesInThePatternOfAnEndMarkAreWarnedOf) {
    QStringList notices;
    QObject::connect(workstation.get(), &CWorkstation::Notice, [&](const QString& text) { notices.append(text); });
    Drag(Place(0, 1, 3), Place(0, 5, -3));
    const auto write = [this](std::size_t pattern) {
        Contents().SetPattern(At(0)->Id(), static_cast<int>(pattern),
                              std::make_shared<const CPattern>(16, std::vector<Note>{{0, 1, 60, 100}}),
                              QStringLiteral("x"));
    };
    write(14);
    EXPECT_TRUE(notices.isEmpty());
    write(15);
    write(15);
    ASSERT_EQ(notices.size(), 1) << "once";
    EXPECT_TRUE(notices[0].startsWith(QLatin1String("Pattern 16"))) << notices[0].toStdString();
}

TEST_F(SongTest, APerformancePlaysBackTheSamePatternsOnTheSameSteps) {
    CAudio& audio = workstation->Audio();
    audio.Prepare({44100.0, 256, 1, false});
    using Heard = std::vector<std::array<int, 4>>;  // pattern and step of both
    const auto listen = [&](int steps, const std::function<void(int step)>& act) {
        Heard heard;
        workstation->Transport().Play();
        while (static_cast<int>(heard.size()) < steps) {
            audio.RenderBlock();
            const PlayPicture& picture = audio.Picture();
            const bool next = picture.soundingStep == static_cast<int>(heard.size());
            if (next) heard.push_back({});
            for (std::size_t index = 0; index < 2 && !heard.empty(); ++index) {
                const InstrumentPicture& shown = picture.instruments[index];
                heard.back()[2 * index] = shown.pattern;
                heard.back()[2 * index + 1] = shown.step;
            }
            if (next) act(picture.soundingStep);
            if (heard.size() % 3 == 1) workstation->Tick();
        }
        workstation->Transport().Stop();
        audio.RenderBlock();
        workstation->Tick();
        return heard;
    };
    SetSongMode(*workstation, false);
    workstation->Performance().Armed().Set(1);
    const int before = Steps().index();
    const Heard live = listen(160, [this](int step) {
        if (step == 20) Contents().SelectPattern(0, 3);
        if (step == 70) Contents().SelectPattern(1, 5);
        if (step == 90) Contents().SelectPattern(0, 0);
        if (step == 100) Contents().SelectPattern(1, 11);
    });
    EXPECT_EQ(UndoText(), "Record performance");
    EXPECT_EQ(Steps().index(), before + 4 + 1) << "the selections, and the take as one step";
    EXPECT_EQ(Items(0), (Playlist{{0, 0, 1}, {3, 32, 1}, {0, 96, 1}, {15, 160, 0}}));
    workstation->Performance().Armed().Set(0);
    SetSongMode(*workstation, true);
    EXPECT_EQ(listen(160, [](int) {}), live);
}

TEST_F(SongTest, TheEditCommandsAreThePatternsUntilTheSongIsPressed) {
    console->Song().SetActive(false);
    EXPECT_FALSE(console->CanEdit(EEdit::kSelectAll));
    console->Edit(EEdit::kCopy);
    workstation->Contents().SelectPattern(0, 12);
    ASSERT_TRUE(At(0)->patterns[12].ForEdit()->Notes().empty());
    console->Edit(EEdit::kPaste);
    EXPECT_EQ(At(0)->patterns[12].ForEdit()->Notes(), At(0)->patterns[0].ForEdit()->Notes());
    Click(Place(0, 1, 3));
    ASSERT_EQ(Items(0).size(), 1U);
    EXPECT_TRUE(console->CanEdit(EEdit::kSelectAll));
    console->Edit(EEdit::kSelectAll);
    console->Edit(EEdit::kDelete);
    EXPECT_TRUE(Items(0).empty());
}

TEST_F(SongTest, AnEmptySongTellsTheWaysOutAndMarkersGoAlongWithTime) {
    CSong& song = workstation->Song();
    ASSERT_TRUE(song.IsEmpty());
    song.PutSelectedPatterns();
    EXPECT_EQ(Items(0), (Playlist{{0, 0, 1}}));
    song.SetMarker(64, QStringLiteral("Drop; loud"));
    song.SetMarker(16, QStringLiteral("Build"));
    song.InsertTime(32, 32);
    EXPECT_EQ(song.Markers(), (SongMarkers{{16, "Build"}, {96, "Drop, loud"}}));
    song.DeleteTime({0, 32});
    EXPECT_EQ(song.Markers(), (SongMarkers{{64, "Drop, loud"}}));
    workstation->Audio().settings.beatsPerBar.Set(3);
    QString error;
    ASSERT_TRUE(Session().SaveProject(File("song.prg"), error)) << error.toStdString();
    Session().NewProject();
    EXPECT_EQ(workstation->Audio().settings.beatsPerBar.Get(), 4) << "the setting is the default";
    EXPECT_TRUE(song.Markers().empty());
    ASSERT_TRUE(Session().LoadProject(File("song.prg"), error)) << error.toStdString();
    EXPECT_EQ(song.Markers(), (SongMarkers{{64, "Drop, loud"}}));
    EXPECT_EQ(song.StepsPerBar(), 12);
}

}  // namespace
}  // namespace quib
