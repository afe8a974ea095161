// SPDX-License-Identifier: GPL-3.0-or-later
// Whole sessions of a user, with the mouse and the keys of a real X server: see run-in-display.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>
#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QTemporaryDir>
#include <csignal>

#include "CDriver.h"
#include "app/CPluginCatalog.h"
#include "app/Commands.h"
#include "app/export/CExportDialog.h"
#include "controls/CFilterCtrl.h"
#include "editors/automation/CWinControlParamEvent.h"

namespace quib {
namespace {

// Numbers of info texts, by which controls are found.
constexpr int kLevel = 470;
constexpr int kMute = 471;
constexpr int kPatterns = 127;
constexpr int kSubject = 3;

class SessionTest : public testing::Test {
protected:
    SessionTest() {
        QDir(folder.path()).mkdir(QStringLiteral("program"));
        for (const char* const kind : {"PluginInstruments", "PluginEffects"}) {
            QFile::link(QStringLiteral(QUIB_BIN_DIR "/") + QLatin1String(kind),
                        folder.filePath(QStringLiteral("program/") + QLatin1String(kind)));
        }
        project = folder.filePath(QStringLiteral("song.prg"));
        QFile::copy(QStringLiteral(QUIB_SOURCE_DIR "/examples/HouseMusic.prg"), project);
    }
    QStringList Arguments(const QStringList& more = {}) const {
        return QStringList{QStringLiteral("--portable"), folder.filePath(QStringLiteral("program")),
                           QStringLiteral("--no-audio")} +
               more;
    }
    // The project is there, and what greets the first start is answered.
    static void SettleIn(CDriver& user) {
        const auto greets = [] { return qobject_cast<QMessageBox*>(QApplication::activeWindow()) != nullptr; };
        ASSERT_TRUE(user.WaitFor(
            [&] { return greets() || (user.Window().isActiveWindow() && user.Console().Strip(kSubject) != nullptr); }));
        // The greeting comes last of all at a first start.
        if (!user.Ask(greets)) user.WaitFor([&] { return greets() || user.IsStarted(); });
        if (user.Ask(greets)) user.Key("Escape");
        ASSERT_TRUE(
            user.WaitFor([&] { return user.Window().isActiveWindow() && user.Console().Strip(kSubject) != nullptr; }));
    }
    static void Close(CDriver& user) {
        user.Ask([&] { QMetaObject::invokeMethod(&user.Window(), "close", Qt::QueuedConnection); });
    }
    static CInstrument& At(CDriver& user, int index) {
        return *user.Ask([&] { return user.Window().Workstation().Stack().Instrument(index); });
    }

    QTemporaryDir folder;
    QString project;
};

TEST_F(SessionTest, WhatAUserChangesIsThereAgainAtTheNextStart) {
    float level = 0;
    std::size_t count = 0;
    const int code = CDriver::Run(Arguments({project}), [&](CDriver& user) {
        SettleIn(user);
        CWorkstation& station = user.Window().Workstation();
        count = user.Ask([&] { return station.Stack().Instruments().size(); });
        EXPECT_GE(count, 8U);
        user.Key("space");
        EXPECT_TRUE(user.WaitFor([&] { return station.Transport().IsPlaying(); })) << "Space plays";

        // One whose level no automation moves.
        CInstrumentStripCtrl& strip = *user.Ask([&] { return user.Console().Strip(kSubject); });
        CControl* const fader = user.Find(strip, kLevel);
        ASSERT_NE(fader, nullptr);
        const float before = fader->ValueNow();
        user.Drag(user.PointOf(*fader, static_cast<double>(fader->Share()) * 0.92 + 0.04), user.PointOf(*fader, 0.2));
        EXPECT_TRUE(user.WaitFor([&] { return !fader->pressed && fader->ValueNow() < before - 20; }));
        level = fader->ValueNow();

        user.Click(user.PointOf(*user.Find(strip, kMute)));
        EXPECT_TRUE(At(user, kSubject).strip.mute.IsOn());

        CControl* const cells = user.Find(strip, kPatterns);
        user.Drag(user.PointOf(*cells, 0.5 / 16), user.PointOf(*cells, 12.5 / 16), 3);
        EXPECT_EQ(At(user, kSubject).patterns[12].ForEdit()->Notes(),
                  At(user, kSubject).patterns[0].ForEdit()->Notes());
        user.Click(user.PointOf(*cells, 12.5 / 16));
        EXPECT_EQ(At(user, kSubject).patternSelected.Get(), 12);

        // The button stands below the last strip: the wheel over the scroll bar goes there.
        const QPoint scrollBar = user.Ask([&] {
            return user.Console().mapToGlobal(QPoint(user.Console().width() - 5, user.Console().height() - 60));
        });
        for (int notch = 0; notch < 30; ++notch) user.Click(scrollBar, 5);
        user.Click(user.PointOf(*user.FindInBand(kAddInstrument)));
        for (const char* const letter : {"s", "y", "n", "t", "h", "Return"}) user.Key(letter);
        EXPECT_TRUE(user.WaitFor([&] { return station.Stack().Instruments().size() == count + 1; }));
        user.Key("ctrl+z");
        EXPECT_TRUE(user.WaitFor([&] { return station.Stack().Instruments().size() == count; })) << "undone";

        EXPECT_TRUE(user.ChooseMenu(QStringLiteral("File"), QStringLiteral("Save")));
        EXPECT_TRUE(user.WaitFor([&] { return !station.Session().IsModified(); }));
        Close(user);
    });
    EXPECT_EQ(code, 0);
    CDriver::Run(Arguments(), [&](CDriver& user) {
        SettleIn(user);
        CWorkstation& station = user.Window().Workstation();
        EXPECT_TRUE(user.WaitFor([&] { return station.Stack().Instruments().size() == count; }));
        EXPECT_NEAR(At(user, kSubject).strip.level.Get(), level, 0.001F);
        EXPECT_TRUE(At(user, kSubject).strip.mute.IsOn());
        EXPECT_EQ(At(user, kSubject).patternSelected.Get(), 12);
        EXPECT_EQ(user.Ask([&] { return station.Session().ProjectPath(); }), project);
        Close(user);
    });
}

// The filter is turned, its lane is on top in the window of automation, and a line is drawn over four bars.
TEST_F(SessionTest, AFourBarRampOnAFilterTakesFourPresses) {
    constexpr int kSteps = 64;
    constexpr int kFilter = 485;
    constexpr int kLineTool = 523;
    const int code = CDriver::Run(Arguments({project}), [&](CDriver& user) {
        SettleIn(user);
        CWorkstation& station = user.Window().Workstation();
        user.Ask([&] {
            CInstrument& instrument = *station.Stack().Instrument(kSubject);
            station.Contents().SetSteps(kSubject, instrument.patternSelected.Get(), kSteps);
            station.Audio().settings.songMode.Set(0.0F);
        });
        CInstrumentStripCtrl& strip = *user.Ask([&] { return user.Console().Strip(kSubject); });
        auto& filter = *static_cast<CFilterCtrl*>(user.Find(strip, kFilter));
        int presses = 0;
        const QPoint handle = user.Ask(
            [&] { return user.Console().mapToGlobal(user.Console().ToWidget(filter.PartAt(0).area).center()); });
        user.Drag(handle, handle + QPoint(14, 0));
        ++presses;
        user.Key("F3");
        ++presses;
        const auto window = [&] {
            return static_cast<CWinControlParamEvent*>(user.Window().Tools().Find(ETool::kAutomation));
        };
        // It stands where it stays.
        ASSERT_TRUE(user.WaitFor([&] { return window() != nullptr && window()->isActiveWindow(); }));
        EXPECT_EQ(user.Ask([&] { return window()->LaneName(); }), QStringLiteral("LP Freq"));
        CControl* line = nullptr;
        for (const auto& top : window()->Controls()) {
            if (line == nullptr) line = user.Find(*top, kLineTool);
        }
        ASSERT_NE(line, nullptr);
        user.Click(user.Ask([&] { return window()->mapToGlobal(window()->ToWidget(line->Rectangle()).center()); }));
        ++presses;
        const auto place = [&](double step, float value) {
            return user.Ask([&] {
                CEventCtrl& curve = window()->Curve();
                const QPoint point(curve.X() + static_cast<int>(curve.View().XOf(step)),
                                   curve.Y() + static_cast<int>(curve.View().YOf(value)));
                return window()->mapToGlobal(window()->ToWidget(QRect(point, QSize(1, 1))).topLeft());
            });
        };
        user.Drag(place(0, 0.1F), place(kSteps - 1, 0.9F));
        ++presses;
        EXPECT_TRUE(user.WaitFor([&] {
            const auto& instrument = *station.Stack().Instrument(kSubject);
            const PointList* const points = instrument.mixLanes.ForEdit()->Find(instrument.patternSelected.Get(), 4);
            return points != nullptr && points->back().x - points->front().x > kSteps - 3;
        }));
        EXPECT_LE(presses, 4);
        Close(user);
    });
    EXPECT_EQ(code, 0);
}

// From a fresh start to sound, and to an effect: how much has to be pressed beside the letters of a name. The
// plug-in is called otherwise than its file.
TEST_F(SessionTest, APluginIsHeardAfterFourPresses) {
    QDir(folder.path()).mkdir(QStringLiteral("more"));
    QFile::copy(QStringLiteral(QUIB_BIN_DIR "/testplugins/Trouble.so"),
                folder.filePath(QStringLiteral("more/library.so")));
    QFile::copy(QStringLiteral(QUIB_BIN_DIR "/testplugins/ParameterBank.so"),
                folder.filePath(QStringLiteral("more/another.so")));
    CSettings(folder.filePath(QStringLiteral("program/settings.ini")))
        .WriteSettingString(kSettingsSection, QStringLiteral("PluginFolders"), folder.filePath(QStringLiteral("more")));
    const int code = CDriver::Run(Arguments(), [&](CDriver& user) {
        CWorkstation& station = user.Window().Workstation();
        ASSERT_TRUE(user.WaitFor([] { return CDriver::TutorialGreets(); }));
        ASSERT_TRUE(user.WaitFor([&] { return user.Window().Catalog().Instruments().size() > 3; }));
        ASSERT_TRUE(user.WaitFor([&] { return user.Window().Catalog().Effects().size() > 0; }));
        int presses = 0;
        const auto press = [&](const char* key) {
            user.Key(key);
            ++presses;
        };
        const auto type = [&](std::initializer_list<const char*> letters) {
            for (const char* const letter : letters) user.Key(letter);
        };
        press("Escape");
        ASSERT_TRUE(user.WaitFor([&] { return user.Window().isActiveWindow(); }));
        press("ctrl+i");
        type({"t", "r", "o", "u"});
        press("Return");
        ASSERT_TRUE(user.WaitFor([&] { return station.Stack().Instruments().size() == 1; }));
        press("a");
        const CInstrument& instrument = At(user, 0);
        EXPECT_TRUE(user.WaitFor([&] { return instrument.strip.peak.Get() > 0; }));
        EXPECT_LE(presses, 4);
        EXPECT_EQ(instrument.title, "Trouble");

        presses = 0;
        press("ctrl+shift+i");
        type({"r", "e", "v"});
        press("Return");
        EXPECT_TRUE(user.WaitFor([&] { return instrument.inserts[0].ForEdit()->plugin != nullptr; }));
        EXPECT_TRUE(instrument.strip.insertOn[0].IsOn());
        EXPECT_LE(presses, 3);

        presses = 0;
        press("ctrl+shift+i");
        type({"b", "a", "n", "k"});
        press("Return");
        EXPECT_TRUE(user.WaitFor([&] { return instrument.inserts[1].ForEdit()->plugin != nullptr; }));
        EXPECT_EQ(instrument.inserts[1].ForEdit()->plugin->Identity().effectName, "Parameter bank");
        EXPECT_LE(presses, 6);
        Close(user);
    });
    EXPECT_EQ(code, 0);
}

// A killed program asks at its next start, and its backup holds the work.
TEST_F(SessionTest, ASongIsAWaveFileAfterThreePresses) {
    constexpr int kMostPresses = 3;
    CDriver::Run(Arguments({QStringLiteral(QUIB_SOURCE_DIR "/examples/Tempo100.prg")}), [&](CDriver& user) {
        SettleIn(user);
        const QString out = folder.filePath(QStringLiteral("out"));
        user.Ask([&] {
            CSettings& settings = user.Window().Workstation().Settings();
            settings.WriteSettingString(QStringLiteral("Export"), QStringLiteral("Folder"), out);
            // The song is its first four bars.
            for (const auto& instrument : user.Window().Workstation().Stack().Instruments())
                user.Window().Workstation().Contents().SetPlaylist(
                    instrument->Id(), std::make_shared<const Playlist>(Playlist{{0, 0, 0}}), QString());
        });
        int presses = 0;
        const auto press = [&](const char* key) {
            user.Key(key);
            ++presses;
        };
        press("ctrl+e");
        ASSERT_TRUE(
            user.WaitFor([&] { return qobject_cast<CExportDialog*>(QApplication::activeWindow()) != nullptr; }));
        press("Return");
        const QString file = out + QStringLiteral("/Tempo100.wav");
        // It stands back behind whatever else the machine does.
        bool isThere = false;
        for (int wait = 0; wait < 4 && !isThere; ++wait) isThere = user.WaitFor([&] { return QFile::exists(file); });
        EXPECT_TRUE(isThere) << "by the name that was proposed";
        EXPECT_GT(QFileInfo(file).size(), 200000);
        EXPECT_LE(presses, kMostPresses);
        Close(user);
    });
}

TEST_F(SessionTest, AKilledSessionComesBackFromItsBackup) {
    const pid_t child = fork();
    if (child == 0) {
        CDriver::Run(Arguments({project}), [&](CDriver& user) {
            SettleIn(user);
            user.Key("space");
            user.Click(user.PointOf(*user.Find(*user.Ask([&] { return user.Console().Strip(1); }), kMute)));
            user.Ask([&] {
                user.Window().Workstation().Session().WriteBackup(false);
                user.Window().Workstation().Session().Saver().Finish();
            });
            kill(getpid(), SIGKILL);
        });
        _exit(1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    CDriver::Run(Arguments(), [&](CDriver& user) {
        // Where the window manager has put it.
        QPoint yes;
        EXPECT_TRUE(user.WaitFor([&] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr || !box->text().contains(QStringLiteral("Backup"))) return false;
            const QAbstractButton* const button = box->button(QMessageBox::Yes);
            const QPoint before = std::exchange(yes, button->mapToGlobal(button->rect().center()));
            return box->isActiveWindow() && yes == before;
        }));
        user.Click(yes);
        EXPECT_TRUE(user.WaitFor([&] { return user.Window().Workstation().Stack().Instruments().size() >= 8; }));
        EXPECT_TRUE(At(user, 1).strip.mute.IsOn());
        Close(user);
    });
}

// Every control of the band and of the first strip, while it plays.
TEST_F(SessionTest, ClickingEverythingDuringPlaybackHarmsNothing) {
    const int code = CDriver::Run(Arguments({project}), [&](CDriver& user) {
        SettleIn(user);
        user.Key("space");
        const auto points = user.Ask([&] {
            std::vector<QPoint> all;
            const CInstrumentStripCtrl* const second = user.Console().Strip(1);
            for (const auto& top : user.Console().Controls()) {
                if (top.get() == second) break;
                for (const auto& child : top->Children()) {
                    const QRect place = user.Console().ToWidget(child->ShownRectangle());
                    if (!place.isEmpty()) all.push_back(user.Console().mapToGlobal(place.center()));
                }
            }
            return all;
        });
        EXPECT_GT(points.size(), 60U);
        for (const QPoint& point : points) {
            for (const int button : {1, 3}) {
                user.Click(point, button);
                // Whatever opened: a menu, a dialog, the window of a plug-in.
                for (int turn = 0; turn < 3 && user.Ask([&] {
                         return QApplication::activePopupWidget() != nullptr ||
                                QApplication::activeModalWidget() != nullptr;
                     });
                     ++turn) {
                    user.Key("Escape");
                }
            }
        }
        EXPECT_TRUE(user.WaitFor([&] { return user.Window().isVisible(); }));
        user.Ask([&] {
            while (user.Window().Workstation().Changes().Steps().canUndo())
                user.Window().Workstation().Changes().Steps().undo();
            user.Window().Workstation().Session().NewProject();
        });
        Close(user);
    });
    EXPECT_EQ(code, 0);
}

}  // namespace
}  // namespace quib
