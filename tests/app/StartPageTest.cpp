// SPDX-License-Identifier: GPL-3.0-or-later
// An empty project, a machine without sound, the tutorial: what the first minutes meet.
#include <QApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "app/CMainWindow.h"
#include "app/CPluginCatalog.h"
#include "app/Commands.h"
#include "app/Look.h"
#include "app/console/MakeConsole.h"
#include "app/start/CDeviceBanner.h"
#include "app/start/CStartPage.h"
#include "document/DocumentFixture.h"
#include "document/ShippedFiles.h"
#include "document/SongMode.h"
#include "editors/tutorial/CWinControlTutorial.h"

namespace quib {
namespace {

class StartPageTest : public DocumentTest {
protected:
    StartPageTest()
        : catalog(QStringLiteral(QUIB_BIN_DIR "/quib-scan"), File("catalog.json")),
          window(*workstation, catalog, MakeConsole) {
        window.ApplySettings();
        window.resize(1366, 728);
        window.show();
        Tick();
    }
    void Tick() {
        for (int turn = 0; turn < 3; ++turn) {
            QCoreApplication::processEvents();
            workstation->Tick();
            window.Tools().FollowEngine();
            Q_EMIT window.Ticked();
        }
    }
    CStartPage& Page() { return *window.findChild<CStartPage*>(); }
    CDeviceBanner& Banner() { return *window.findChild<CDeviceBanner*>(); }

    CPluginCatalog catalog;
    CMainWindow window;
};

TEST_F(StartPageTest, StandsThereWhileTheProjectIsEmptyAndBeginsOneInOneStep) {
    EXPECT_TRUE(Page().isVisible());
    for (const QString& example : ExampleFiles()) {
        const QString name = QFileInfo(example).completeBaseName();
        EXPECT_FALSE(Page().AreaOf(name).isEmpty()) << name.toStdString() << " has its card";
    }
    EXPECT_FALSE(Page().Press(QStringLiteral("nothing"), false));
    EXPECT_TRUE(Page().Press(QStringLiteral("beat"), false));
    Tick();
    ASSERT_EQ(Stack().Instruments().size(), 1U);
    EXPECT_GE(At(0)->patterns[0].ForEdit()->Notes().size(), 16U);
    EXPECT_TRUE(At(0)->keyboardOn.IsOn());
    EXPECT_FALSE(Page().isVisible());
    EXPECT_EQ(Steps().count(), 1);
    workstation->Changes().Undo();
    Tick();
    EXPECT_TRUE(Page().isVisible() && Stack().Instruments().empty());
}

TEST_F(StartPageTest, AnExampleIsNeverWrittenOver) {
    const QString example = ExampleFiles().at(3);
    EXPECT_TRUE(Page().Press(QFileInfo(example).completeBaseName(), false));
    Tick();
    ASSERT_EQ(Session().ProjectPath(), example);
    EXPECT_TRUE(IsExample(example) && !IsExample(File("Tempo100.prg")));
    bool asked = false;
    QTimer::singleShot(100, [&asked] {
        QWidget* const dialog = QApplication::activeModalWidget();
        asked = dialog != nullptr;
        if (dialog != nullptr) dialog->close();
    });
    window.Run(command::kSave);
    EXPECT_TRUE(asked) << "for another name";
}

TEST_F(StartPageTest, WithoutADeviceALineSaysSoAndPlayTellsWhy) {
    EXPECT_TRUE(Banner().isVisible());
    const QSignalSpy notices(workstation.get(), &CWorkstation::Notice);
    window.Run(command::kPlay);
    EXPECT_EQ(notices.size(), 1);
    Banner().findChild<QPushButton*>(QStringLiteral("playSilently"))->click();
    Tick();
    EXPECT_FALSE(Banner().isVisible());
    window.Run(command::kPlay);
    EXPECT_TRUE(QTest::qWaitFor([this] {
        workstation->Tick();
        return workstation->Transport().IsPlaying();
    }));
    EXPECT_EQ(notices.size(), 1);
    workstation->Output().CloseOutput();
}

TEST_F(StartPageTest, TheTutorialPutsTheUsersProjectAsideAndGivesItBack) {
    AddSynth();
    Tick();
    const std::string mine = Session().Bytes();
    window.OpenTool(ETool::kTutorial);
    auto& tutorial = *static_cast<CWinControlTutorial*>(window.Tools().Find(ETool::kTutorial));
    tutorial.Begin(1);
    Tick();
    EXPECT_TRUE(Stack().Instruments().empty() && Page().isVisible());
    EXPECT_EQ(tutorial.Target(), kNewBeatButton);
    Page().Press(QStringLiteral("beat"), false);
    Tick();
    EXPECT_EQ(tutorial.Step(), 1) << "seen in the project, without a button";
    tutorial.Skip();
    EXPECT_EQ(tutorial.Lesson(), 2);
    tutorial.close();
    Tick();
    EXPECT_EQ(Session().Bytes(), mine);
    EXPECT_TRUE(Session().IsModified());
}

TEST_F(StartPageTest, EveryLessonFindsWhatItNeedsAndGoesOnByWhatTheUserDid) {
    window.OpenTool(ETool::kTutorial);
    auto& tutorial = *static_cast<CWinControlTutorial*>(window.Tools().Find(ETool::kTutorial));
    const auto at = [&] {
        Tick();
        return std::pair(tutorial.Lesson(), tutorial.Step());
    };
    tutorial.Begin(3);
    ASSERT_EQ(Stack().Instruments().size(), 1U) << "there is something to put into the song";
    EXPECT_EQ(at(), std::pair(3, 0));
    SetSongMode(*workstation, true);
    EXPECT_EQ(at(), std::pair(3, 1));
    workstation->Song().PutSelectedPatterns();
    EXPECT_EQ(at(), std::pair(4, 0));
    workstation->Audio().recordAutomation.Set(1);
    EXPECT_EQ(at(), std::pair(4, 1));
    workstation->Contents().SetLanes(Stack().Instrument(0)->Id(), ELanes::kMix,
                                     std::make_shared<const CEventLanes>(CEventLanes().With(0, 1, {{2, 0.5F}})), "x");
    EXPECT_EQ(at(), std::pair(5, 0));
    tutorial.Begin(3);
    EXPECT_TRUE(workstation->Song().IsEmpty()) << "again from its beginning";
    tutorial.Begin(5);
    EXPECT_FALSE(workstation->Song().IsEmpty()) << "there is something to export";
}

TEST_F(StartPageTest, TheFirstStartKeepsALanguageAndLaterOnesTheUsers) {
    KeepFirstLanguage(settings);
    EXPECT_NE(settings.IsOn("DisplayInfoMessagesEnglish"), settings.IsOn("DisplayInfoMessagesFrench"));
    settings.SetOn("DisplayInfoMessagesEnglish", false);
    settings.SetOn("DisplayInfoMessagesFrench", false);
    KeepFirstLanguage(settings);
    EXPECT_FALSE(settings.IsOn("DisplayInfoMessagesEnglish") || settings.IsOn("DisplayInfoMessagesFrench"));
}

}  // namespace
}  // namespace quib
