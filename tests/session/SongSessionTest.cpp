// SPDX-License-Identifier: GPL-3.0-or-later
// Arranging and performing a song with the mouse and the keys of a real X server: see run-in-display.
#include <QApplication>
#include <map>

#include "FreshSession.h"
#include "app/console/CSongModeCtrl.h"
#include "app/export/CExportDialog.h"
#include "editors/playlist/CSongPane.h"

namespace quib {
namespace {

constexpr int kPerform = 505;
constexpr int kLaunch = 553;
constexpr int kMore = 554;
constexpr int kBar = 16;

class SongSessionTest : public FreshSession {
protected:
    // A beat and a bass of a bar, the song open and empty, in song mode.
    void Run(const std::function<void()>& script) {
        FreshSession::Run([&] {
            user->Key("Escape");
            EXPECT_TRUE(IsReady());
            user->Ask([&] {
                Station().Session().NewProject();
                QString error;
                for (int index = 0; index < 2; ++index) {
                    EXPECT_EQ(Station().Stack().AddInstrument(QStringLiteral("QUIB synth"), error), index);
                    for (int pattern = 0; pattern < 4; ++pattern) {
                        Station().Contents().SetPattern(
                            Instrument(index).Id(), pattern,
                            std::make_shared<const CPattern>(kBar, std::vector<Note>{{0, 1, 40 + pattern, 100}}),
                            QStringLiteral("x"));
                    }
                }
                Station().Audio().settings.tempo.Set(240);
                SetSongMode(Station(), true);
            });
            user->Key("F6");
            EXPECT_TRUE(user->WaitFor([&] { return Pane().IsShown() && Pane().Lane(1) != nullptr; }));
            script();
        });
    }
    CInstrument& Instrument(int index) const { return *Station().Stack().Instrument(index); }
    CSongPane& Pane() const { return user->Console().Song(); }
    Playlist Items(int index) const {
        return user->Ask([&] { return *Instrument(index).playlist.ForEdit(); });  // from the script's thread only
    }
    // A place on the screen, a control's own pixels from its left and upper edge.
    QPoint Screen(const CControl& control, double x, int y) const {
        return user->Console().mapToGlobal(QPoint(control.X() + static_cast<int>(x), control.Y() + y));
    }
    QPoint Cell(int lane, double bar, int dx = 0) const {
        return user->Ask([&] { return Screen(*Pane().Lane(lane), Pane().View().time.XOf((bar - 1) * kBar) + dx, 12); });
    }
    QPoint Ruler(double bar, int dx, bool upper) const {
        return user->Ask(
            [&] { return Screen(Pane().Ruler(), Pane().View().time.XOf((bar - 1) * kBar) + dx, upper ? 10 : 32); });
    }
    QPoint Tool(int info) const { return user->PointOf(*user->Find(Pane().Tools(), info)); }

    // --- Each of these is one press

    void Drag(QPoint from, QPoint to) {
        ++presses;
        user->Drag(from, to);
    }
    void Key(const char* name) {
        ++presses;
        user->Key(name);
    }

    int presses = 0;
};

TEST_F(SongSessionTest, ASongIsArrangedInFourPressesAndChangedByTheKeypad) {
    Run([&] {
        Drag(Cell(0, 1, 3), Cell(0, 17, -3));
        Drag(Cell(1, 5, 3), Cell(1, 17, -3));
        EXPECT_LE(presses, 4);
        EXPECT_EQ(Items(0), (Playlist{{0, 0, 1}, {15, 256, 0}}));
        EXPECT_EQ(Items(1), (Playlist{{0, 64, 1}, {15, 256, 0}}));
        presses = 0;
        Drag(Ruler(5, 2, true), Ruler(9, -2, true));
        EXPECT_EQ(presses, 1);
        EXPECT_EQ(user->Ask([&] { return Station().Song().Loop().first; }), 4 * kBar);
        EXPECT_EQ(user->Ask([&] { return Station().Song().Loop().end; }), 8 * kBar);
        EXPECT_TRUE(user->Ask([&] { return Station().Song().IsLoopOn(); }));

        // The digits of the keypad, whose keys are 80 and 84 of the X server.
        user->Click(Cell(1, 6));
        user->Key("Num_Lock");
        user->Key("84");
        EXPECT_EQ(Items(1)[0].pattern, 4) << "5 is the fifth";
        user->Key("80");
        EXPECT_EQ(Items(1)[0].pattern, 7);
        user->Key("90");
        EXPECT_EQ(Items(1)[0].pattern, 7) << "0 is none";
        user->Key("Num_Lock");
        for (int press = 0; press < 7; ++press) user->Key("Down");
        EXPECT_EQ(Items(1)[0].pattern, 0);

        // Over to the other instrument, where there is the same pattern; Delete held sweeps.
        user->Key("Escape");
        user->Drag(Cell(1, 6), Cell(0, 22));
        EXPECT_TRUE(Items(1).empty());
        EXPECT_EQ(Items(0).back(), (PlaylistEntry{15, 256 + 256, 0}));
        EXPECT_EQ(user->Ask([&] { return Station().Selection().CurrentIndex(); }), 0);
        user->Key("ctrl+z");
        EXPECT_EQ(Items(1), (Playlist{{0, 64, 1}, {15, 256, 0}}));
        user->Send("keydown Delete");
        user->Drag(Cell(0, 2), Cell(0, 4));
        user->Send("keyup Delete");
        EXPECT_TRUE(Items(0).empty());

        // Beyond the right edge a drag scrolls on.
        const QPoint edge = user->Ask([&] { return Screen(Pane().Ruler(), Pane().View().time.Width() + 8, 60); });
        const QPoint from = Cell(1, 6);
        user->Send(QStringLiteral("mousemove %1 %2 mousedown 1 sleep 0.05 mousemove %3 %4 sleep 0.6 mouseup 1")
                       .arg(from.x())
                       .arg(from.y())
                       .arg(edge.x())
                       .arg(from.y())
                       .toLatin1()
                       .constData());
        EXPECT_GT(user->Ask([&] { return Pane().View().time.Scroll(); }), 20);

        // The loop's region, out of the menu behind the tools.
        user->Click(Tool(kMore));
        EXPECT_TRUE(user->ChooseOpen(QStringLiteral("Bounce the loop region")));
        CExportDialog* dialog = nullptr;
        ASSERT_TRUE(user->WaitFor([&] { return (dialog = user->Window().findChild<CExportDialog*>()) != nullptr; }));
        EXPECT_EQ(user->Ask([&] { return dialog->Settings().range; }), EExportRange::kLoop);
        EXPECT_EQ(user->Ask([&] { return dialog->Settings().firstStep; }), 4 * kBar);
        user->Ask([&] { dialog->reject(); });
    });
}

TEST_F(SongSessionTest, APerformanceByMouseIsPlayedBackOnTheSameSteps) {
    Run([&] {
        using Heard = std::map<int, std::array<int, 4>>;  // pattern and step of both, by step
        Heard heard;
        const auto look = [&] {
            const PlayPicture& picture = Station().Audio().Picture();
            if (!picture.playing || picture.soundingStep < 0 || picture.instrumentCount < 2) return -1;
            const auto& first = picture.instruments[0];
            const auto& second = picture.instruments[1];
            heard[picture.soundingStep] = {first.pattern, first.step, second.pattern, second.step};
            return picture.soundingStep;
        };
        const auto until = [&](int step) { user->WaitFor([&] { return look() >= step; }); };
        user->Click(Tool(kLaunch));
        EXPECT_TRUE(user->ChooseOpen(QStringLiteral("At the next beat")));
        user->Click(Tool(kPerform));
        EXPECT_FALSE(user->Ask([&] { return Station().Audio().settings.songMode.IsOn(); }));
        const auto cell = [&](int strip, int pattern) {
            return user->PointOf(*user->Find(*user->Console().Strip(strip), 127), (pattern + 0.5) / 16);
        };
        const std::array places = {cell(0, 1), cell(0, 2)};
        user->Key("space");
        until(1);
        user->Click(places[0]);
        until(17);
        user->Click(places[1]);
        until(40);
        user->Key("space");
        EXPECT_TRUE(user->WaitFor(
            [&] { return !Station().Audio().Picture().playing && !Instrument(0).playlist.ForEdit()->empty(); }));
        const Heard live = std::exchange(heard, {});
        ASSERT_GE(Items(0).size(), 3U);
        EXPECT_EQ(Items(0)[1].start % 4, 0) << "launched at a beat";
        EXPECT_NE(Items(0)[1].start % kBar, 0) << "not at the pattern's end";
        user->Ask([&] { SetSongMode(Station(), true); });
        user->Key("space");
        until(38);
        user->Key("space");
        int compared = 0;
        for (const auto& [step, played] : heard) {
            const auto known = live.find(step);
            if (known == live.end() || step > 38) continue;
            EXPECT_EQ(played, known->second) << "step " << step;
            ++compared;
        }
        EXPECT_GT(compared, 20);
    });
}

}  // namespace
}  // namespace quib
