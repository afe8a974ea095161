// SPDX-License-Identifier: GPL-3.0-or-later
// The first minutes of somebody who has never seen the program, on a fresh profile: see run-in-display.
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

#include "CDriver.h"
#include "app/start/CStartPage.h"
#include "editors/tutorial/CWinControlTutorial.h"

namespace quib {
namespace {

constexpr int kStepBoxes = 480;
constexpr int kBeatLesson = 1;
constexpr int kMelodyLesson = 2;
constexpr int kMostActions = 40;

class NewcomerTest : public testing::Test {
protected:
    void Run(const std::function<void(CDriver&)>& script) {
        const QStringList arguments = {QStringLiteral("--portable"), folder.path(), QStringLiteral("--no-audio")};
        CDriver::Run(arguments, [&](CDriver& user) {
            EXPECT_TRUE(user.WaitFor([&] { return user.IsStarted() && CDriver::TutorialGreets(); }));
            script(user);
            user.Ask([&] {
                user.Window().Workstation().Session().NewProject();
                QMetaObject::invokeMethod(&user.Window(), "close", Qt::QueuedConnection);
            });
        });
    }
    static CStartPage& Page(CDriver& user) { return *user.Window().findChild<CStartPage*>(); }
    static CWinControlTutorial& Tutorial(CDriver& user) {
        return *static_cast<CWinControlTutorial*>(user.Window().Tools().Find(ETool::kTutorial));
    }
    // Of an entry of the start page, `place` from its upper left corner.
    static QPoint PointOf(CDriver& user, const char* entry, QPoint place) {
        return user.Ask([&] {
            CStartPage& page = Page(user);
            return page.mapToGlobal(page.AreaOf(QLatin1String(entry)).topLeft() + place);
        });
    }

    QTemporaryDir folder;
};

TEST_F(NewcomerTest, TheFirstSoundIsOnePressAwayAndTwoWithoutAMouse) {
    Run([](CDriver& user) {
        CWorkstation& station = user.Window().Workstation();
        const auto sounds = [&] {
            const auto& all = station.Stack().Instruments();
            return std::any_of(all.begin(), all.end(), [](const auto& each) { return each->strip.peak.Get() > 0; });
        };
        const QRect card = user.Ask([&] { return Page(user).AreaOf(QStringLiteral("HouseMusic")); });
        user.Click(PointOf(user, "HouseMusic", QPoint(card.width() - 31, 145)));
        EXPECT_TRUE(user.WaitFor(sounds)) << "one press of the arrow";

        user.Ask([&] {
            station.Session().NewProject();
            Tutorial(user).close();
        });
        EXPECT_TRUE(user.WaitFor([&] { return Page(user).isVisible() && !station.Transport().IsPlaying(); }));
        EXPECT_TRUE(user.WaitFor([&] { return Page(user).hasFocus(); }));
        user.Key("Return");
        EXPECT_TRUE(user.WaitFor([&] { return !station.Stack().Instruments().empty(); }));
        user.Key("space");
        EXPECT_TRUE(user.WaitFor(sounds)) << "Enter and Space";
    });
}

TEST_F(NewcomerTest, TheLessonsLeadToALoopOfTwoInstrumentsInFortyActions) {
    Run([](CDriver& user) {
        CWorkstation& station = user.Window().Workstation();
        CWinControlTutorial& tutorial = Tutorial(user);
        int actions = 0;
        const auto click = [&](QPoint point) {
            user.Click(point);
            ++actions;
        };
        const auto key = [&](const char* name) {
            user.Key(name);
            ++actions;
        };
        // Nothing is done that the lesson does not ask for, and its own step sees it.
        const auto told = [&](int lesson, int step) {
            EXPECT_TRUE(user.WaitFor([&] { return tutorial.Lesson() == lesson && tutorial.Step() == step; }))
                << "lesson " << lesson << " step " << step << ", shown: " << tutorial.Lesson() << " "
                << tutorial.Step();
        };
        const auto box = [&](int index) {
            CControl* const boxes = user.Find(
                *user.Ask([&] { return user.Console().Strip(station.Selection().CurrentIndex()); }), kStepBoxes);
            return user.PointOf(*boxes, (index + 0.5) / user.Ask([&] {
                return station.Selection().CurrentInstrument()->patterns[0].ForEdit()->StepCount();
            }));
        };
        click(user.Ask([&] { return tutorial.mapToGlobal(QPoint(100, 72 + 36 + 15)); }));
        told(kBeatLesson, 0);
        EXPECT_TRUE(user.WaitFor([&] { return Page(user).isVisible(); }));
        click(PointOf(user, "beat", QPoint(80, 25)));
        told(kBeatLesson, 1);
        EXPECT_TRUE(user.WaitFor([&] { return user.Console().Strip(0) != nullptr; }));
        for (const int step : {1, 5}) click(box(step));
        told(kMelodyLesson, 0);
        for (const char* const name : {"ctrl+i", "s", "y", "n", "t", "h", "Return"}) key(name);
        told(kMelodyLesson, 1);
        EXPECT_TRUE(user.WaitFor([&] { return user.Console().Strip(1) != nullptr; }));
        for (const int step : {0, 3, 6, 10}) click(box(step));
        told(kMelodyLesson + 1, 0);
        EXPECT_LE(actions, kMostActions);
        EXPECT_EQ(user.Ask([&] { return station.Stack().Instruments().size(); }), 2U);
        EXPECT_TRUE(user.Ask([&] { return station.Transport().IsPlaying(); }));
        RecordProperty("actions", actions);
        std::printf("actions: %d\n", actions);
    });
}

}  // namespace
}  // namespace quib
