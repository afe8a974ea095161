// SPDX-License-Identifier: GPL-3.0-or-later
// Writing notes with the mouse and the keys of a real X server, from a start with nothing: see run-in-display.
#include <QApplication>
#include <QMessageBox>
#include <algorithm>
#include <cmath>
#include <optional>

#include "FreshSession.h"
#include "app/CPluginCatalog.h"
#include "app/browser/CPluginBrowser.h"
#include "app/start/CStartPage.h"
#include "editors/pianoroll/CWinControlPianoRoll.h"

namespace quib {
namespace {

constexpr int kKick = 36;

class RollSessionTest : public FreshSession {
protected:
    // --- Each of these is one press

    void Key(const char* name) {
        ++presses;
        user->Key(name);
    }
    void Click(QPoint place, int button = 1) {
        ++presses;
        user->Click(place, button);
    }
    void Choose(const char* entry) {
        ++presses;
        ASSERT_TRUE(user->ChooseOpen(QLatin1String(entry))) << entry;
    }

    void Dismiss() {
        Key("Escape");
        ASSERT_TRUE(IsReady());
    }
    // An empty project has the start page where the strips and their button are.
    QPoint AddPlace() {
        const auto onPage = user->Ask([&]() -> std::optional<QPoint> {
            auto& page = *user->Window().findChild<CStartPage*>();
            if (!page.isVisible()) return std::nullopt;
            return page.mapToGlobal(page.AreaOf(QStringLiteral("add")).center());
        });
        return onPage ? *onPage : user->PointOf(*user->FindInBand(kAddInstrument));
    }
    // Out of the browser: the built-in ones stand first, by name.
    void Add(const char* rowKey) {
        const std::size_t before = user->Ask([&] { return Station().Stack().Instruments().size(); });
        ASSERT_TRUE(user->WaitFor([&] { return user->Window().Catalog().Instruments().size() >= 3; }));
        Click(AddPlace());
        ASSERT_TRUE(user->WaitFor([&] {
            const auto* const browser = user->Window().findChild<CPluginBrowser*>();
            return browser != nullptr && browser->isVisible() && browser->isAncestorOf(QApplication::focusWidget());
        }));
        Key(rowKey);
        ASSERT_TRUE(user->WaitFor([&] {
            const auto current = Station().Selection().CurrentInstrument();
            return Station().Stack().Instruments().size() > before && (!roll || roll->Shown() == current);
        }));
    }
    void OpenRoll() {
        Key("F2");
        ASSERT_TRUE(user->WaitFor([&] {
            roll = static_cast<CWinControlPianoRoll*>(user->Window().Tools().Find(ETool::kPianoRoll));
            return roll != nullptr && roll->isActiveWindow();
        }));
    }
    // A place of the roll on the screen, which has to be seen there.
    QPoint Place(double x, int y) const {
        return user->Ask([&] {
            const CPianoRollCtrlEx& control = roll->Roll();
            EXPECT_TRUE(x >= 0 && x < control.Width() && y >= 0 && y < control.Height()) << "out of sight";
            return roll->mapToGlobal(QPoint(control.X() + static_cast<int>(x), control.Y() + y));
        });
    }
    int RowOf(int key) const {
        return user->Ask([&] { return roll->Roll().view.FootOf(key) - roll->Roll().view.RowHeight() / 2; });
    }
    QPoint Cell(double step, int key) const {
        return Place(user->Ask([&] { return roll->Roll().view.XOf(step + 0.5); }), RowOf(key));
    }
    QPoint Label(int key) const { return Place(50, RowOf(key)); }
    QPoint Header(int step) const {
        return Place(user->Ask([&] { return roll->Roll().view.XOf(step + 0.5); }), 10);
    }
    std::vector<Note> Notes(int instrument, int pattern = 0) const {
        return user->Ask([&] {
            return Station()
                .Stack()
                .Instrument(instrument)
                ->patterns[static_cast<std::size_t>(pattern)]
                .ForEdit()
                ->Notes();
        });
    }
    static std::vector<Note> Row(int key, float first, float every, int count) {
        std::vector<Note> notes;
        for (int number = 0; number < count; ++number)
            notes.push_back({first + every * static_cast<float>(number), 1, key, 100});
        return notes;
    }

    CWinControlPianoRoll* roll = nullptr;
    int presses = 0;
};

TEST_F(RollSessionTest, ALoopIsWrittenInTwentyPressesAndEightNotesAreRecordedInTen) {
    Run([&] {
        Dismiss();
        Add("ctrl+1");
        OpenRoll();
        Click(Label(kKick), 3);
        Choose("Fill every beat");
        const int hat = user->Ask([&] {
            const auto& names = roll->Roll().options.rowNames;
            return static_cast<int>(std::ranges::find(names, "Closed Hat") - names.begin());
        });
        Click(Label(hat), 3);
        Choose("Fill off-beats");
        Add("ctrl+3");
        Click(Header(31));
        const int keys[] = {45, 45, 48, 45, 50, 50, 52, 48};
        for (int note = 0; note < 8; ++note) Click(Cell(4 * note, keys[note]));
        Key("space");
        EXPECT_LE(presses, 20);
        EXPECT_TRUE(user->WaitFor([&] { return Station().Transport().IsPlaying(); }));
        // The drums' bar sounds twice in the two bars of the bass.
        std::vector<Note> drums = Row(kKick, 0, 4, 4);
        for (const Note& note : Row(hat, 2, 4, 4)) drums.push_back(note);
        EXPECT_EQ(Notes(0), drums);
        EXPECT_EQ(user->Ask([&] { return roll->Roll().State().pattern->StepCount(); }), 32);
        ASSERT_EQ(Notes(1).size(), 8U);
        for (std::size_t note = 0; note < 8; ++note) {
            EXPECT_EQ(Notes(1)[note].position, 4 * static_cast<float>(note));
            EXPECT_EQ(Notes(1)[note].key, keys[note]);
        }

        user->Key("space");
        EXPECT_TRUE(user->WaitFor([&] { return !Station().Transport().IsPlaying(); }));
        presses = 0;
        Key("ctrl+r");
        EXPECT_TRUE(user->WaitFor([&] { return Station().Transport().IsPlaying(); })) << "recording plays";
        for (const char* const key : {"a", "s", "d", "f", "g", "h", "j", "k"}) {
            Key(key);
            user->Send("sleep 0.2");
        }
        Key("space");
        EXPECT_LE(presses, 10);
        EXPECT_TRUE(user->WaitFor([&] { return Station().Changes().Steps().undoText() == "Record notes"; }));
        const std::vector<Note> all = Notes(1);
        ASSERT_EQ(all.size(), 16U);
        for (std::size_t note = 8; note < 16; ++note) {
            EXPECT_EQ(all[note].position, std::round(all[note].position)) << "quantised";
        }
        user->Key("ctrl+z");
        user->WaitFor([&] { return Station().Changes().Steps().canRedo(); });
        EXPECT_EQ(Notes(1).size(), 8U) << "a take is one step";
    });
}

TEST_F(RollSessionTest, TheHandsOfThePianoRollWorkWithARealMouse) {
    Run([&] {
        Dismiss();
        Add("ctrl+3");
        OpenRoll();
        const auto selected = [&] { return user->Ask([&] { return roll->Roll().State().selection.size(); }); };
        const auto point = [](QPoint place) { return QStringLiteral("%1 %2").arg(place.x()).arg(place.y()); };
        const auto send = [&](const QString& words) { user->Send(words.toLatin1().constData()); };
        // Fresh: right is length, up is key; then the body moves it and its end stretches it.
        user->Drag(Cell(2, 60), Cell(5, 62));
        EXPECT_EQ(Notes(0), (std::vector<Note>{{2, 4, 62, 100}}));
        user->Drag(Cell(3, 62), Cell(5, 64));
        EXPECT_EQ(Notes(0)[0], (Note{4, 4, 64, 100}));
        user->Drag(Cell(7, 64) + QPoint(8, 0), Cell(9, 64) + QPoint(8, 0));
        EXPECT_EQ(Notes(0)[0], (Note{4, 6, 64, 100}));
        user->Click(Cell(6, 64));
        user->Click(Cell(20, 60));
        EXPECT_EQ(selected(), 0U);
        EXPECT_EQ(Notes(0).size(), 1U) << "a selection is cleared first";
        // A cell that a note reaches into is covered, also where the mouse is beside the note.
        const auto snap = [&](const Snap& next) { user->Ask([&] { roll->Roll().view.time.snap = next; }); };
        snap({Snap::EKind::kFraction, 2});
        user->Click(Cell(1, 64));
        EXPECT_EQ(Notes(0).size(), 1U) << "a covered cell";
        snap({});
        user->Click(Cell(12, 60));
        EXPECT_EQ(Notes(0).size(), 2U);
        send(QStringLiteral("sleep 0.5"));
        user->Drag(Cell(1, 66), Cell(13, 58), 3);
        EXPECT_EQ(selected(), 2U) << "the marquee of the right button";
        send(QStringLiteral("keydown Control_L mousemove %1 click 1 keyup Control_L").arg(point(Cell(5, 64))));
        EXPECT_EQ(selected(), 1U) << "Ctrl takes one out";
        // Ctrl while dragging copies; Escape leaves no trace of a drag.
        send(
            QStringLiteral("mousemove %1 mousedown 1 sleep 0.05 mousemove %2 sleep 0.05 keydown Control_L mousemove %3 "
                           "sleep 0.05 mouseup 1 keyup Control_L")
                .arg(point(Cell(12, 60)), point(Cell(13, 60)), point(Cell(14, 57))));
        ASSERT_EQ(Notes(0).size(), 3U);
        EXPECT_EQ(Notes(0)[1].position, 12);
        EXPECT_EQ(Notes(0)[2].position, 14);
        EXPECT_EQ(Notes(0)[2].key, 57);
        const std::vector<Note> before = Notes(0);
        send(QStringLiteral("mousemove %1 mousedown 1 sleep 0.05 mousemove %2 sleep 0.05 key Escape mouseup 1")
                 .arg(point(Cell(5, 64)), point(Cell(8, 70))));
        EXPECT_EQ(Notes(0), before);
        EXPECT_EQ(selected(), 0U);
        // Copied through the clipboard into another pattern, and back to nothing by a double click.
        user->Key("ctrl+a");
        user->Key("ctrl+c");
        user->Ask([&] { Station().Contents().SelectPattern(0, 1); });
        user->Key("ctrl+v");
        EXPECT_EQ(Notes(0, 1), before);
        send(QStringLiteral("mousemove %1 click --repeat 2 --delay 60 1").arg(point(Cell(5, 64))));
        EXPECT_TRUE(Notes(0, 1).empty()) << "a double click deletes what is selected";
        user->Key("ctrl+z");
        EXPECT_EQ(Notes(0, 1), before);
        user->Click(Header(11));
        EXPECT_EQ(user->Ask([&] { return roll->Roll().State().pattern->StepCount(); }), 12);
        user->Ask([&] {
            roll->Roll().view.time.SetStepWidth(5, 0);
            roll->Roll().ViewMoved();
        });
        send(QStringLiteral("keydown Control_L mousemove %1 click 5 keyup Control_L").arg(point(Cell(4, 62))));
        EXPECT_EQ(user->Ask([&] { return roll->Roll().view.time.StepWidth(); }), 3) << "half of 5, limited";
    });
}

}  // namespace
}  // namespace quib
