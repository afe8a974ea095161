// SPDX-License-Identifier: GPL-3.0-or-later
// What a start does with the session that it finds, and the program as a process: locks and signals.
#include <QFileInfo>
#include <QLabel>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <csignal>

#include "app/CPluginCatalog.h"
#include "app/CSessionKeeper.h"
#include "document/DocumentFixture.h"

namespace quib {
namespace {

QByteArray Content(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void Put(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

class SessionKeeperTest : public DocumentTest {
protected:
    SessionKeeperTest()
        : catalog(QStringLiteral(QUIB_BIN_DIR "/quib-scan"), File("catalog.json")),
          window(*workstation, catalog, [](CMainWindow&) { return new QLabel; }),
          keeper(window, [this](const QString&, const QString& text) {
              questions.append(text);
              return answer;
          }) {}

    // A session that was not saved, as the last run has left it.
    QByteArray LeaveSession() {
        AddSynth();
        workstation->Session().WriteCopy(folders.currentProject);
        workstation->Session().Saver().Finish();
        workstation->Session().NewProject();
        settings.SetOn(QStringLiteral("ProjectModified"), true);
        return Content(folders.currentProject);
    }
    bool IsKept(const QByteArray& bytes) {
        for (const QString& path : Session().TimedBackups()) {
            if (Content(path) == bytes) return true;
        }
        return false;
    }
    int Mark(const char* name) { return settings.ReadSettingInt(kSettingsSection, QLatin1String(name), -1); }

    CPluginCatalog catalog;
    CMainWindow window;
    QStringList questions;
    bool answer = false;
    CSessionKeeper keeper;
    QString error;
};

TEST_F(SessionKeeperTest, ASessionWhoseLoadingEndedTheLastStartIsOfferedAndKept) {
    const QByteArray left = LeaveSession();
    settings.SetOn(QStringLiteral("ErrorClosed"), true);
    keeper.Begin({});
    EXPECT_EQ(questions.size(), 1);
    EXPECT_TRUE(Stack().Instruments().empty());
    ASSERT_TRUE(keeper.End(error)) << error.toStdString();
    EXPECT_NE(Content(folders.currentProject), left);
    EXPECT_TRUE(IsKept(left)) << "the work that was refused can be restored";

    Put(folders.currentProject, left);
    settings.SetOn(QStringLiteral("ErrorClosed"), true);
    answer = true;
    keeper.Begin({});
    EXPECT_EQ(Stack().Instruments().size(), 1U);
    EXPECT_EQ(Mark("ErrorClosed"), 0);
}

TEST_F(SessionKeeperTest, ASessionThatCannotBeReadIsKeptBeforeItIsReplaced) {
    const QByteArray noise("\x01\x02 no project\n");
    Put(folders.currentProject, noise);
    keeper.Begin({});
    ASSERT_TRUE(keeper.End(error));
    EXPECT_TRUE(IsKept(noise));

    // One that can be kept nowhere is not replaced at all.
    Put(folders.currentProject, noise + "more");
    QDir(folders.backups).removeRecursively();
    Put(folders.backups.chopped(1), "no folder");
    settings.SetOn(QStringLiteral("ErrorClosed"), true);
    CSessionKeeper second(window, [](const QString&, const QString&) { return false; });
    second.Begin({});
    EXPECT_TRUE(second.End(error));
    EXPECT_EQ(Content(folders.currentProject), noise + "more");
    EXPECT_EQ(Mark("ErrorClosed"), 1);
}

TEST_F(SessionKeeperTest, AfterACrashTheJournalBringsBackWhatTheBackupHasNotYet) {
    ASSERT_TRUE(Session().LoadProject(QStringLiteral(QUIB_SOURCE_DIR "/examples/HouseMusic.prg"), error));
    Session().WriteBackup(false);
    workstation->Presets().AddPreset(2);
    Contents().SetSteps(3, 7, 40);
    At(1)->midi.channel.Set(5);
    At(1)->swing.Set(0.5F);
    PluginAt(0).SetParameter(2, 0.125F);
    workstation->Changes().Touch();
    const auto journal = [this] {
        for (int tick = 0; tick < 200; ++tick) workstation->Tick();
        Session().Saver().Finish();
        return Content(folders.journal);
    };
    const QByteArray written = journal();
    Session().WriteCopy(File("now.prg"));
    Session().Saver().Finish();
    EXPECT_TRUE(written == Content(File("now.prg"))) << written.size();
    QFile::remove(folders.journal);
    EXPECT_TRUE(journal().isEmpty()) << "nothing has changed";
    Put(folders.journal, written);

    Session().NewProject();
    settings.WriteSettingInt(kSettingsSection, QStringLiteral("BackupClosed"), 0);
    answer = true;
    keeper.Begin({});
    ASSERT_EQ(Stack().Instruments().size(), 11U);
    EXPECT_EQ(At(3)->patterns[7].ForEdit()->StepCount(), 40);
    EXPECT_TRUE(Session().IsModified());
    EXPECT_TRUE(IsKept(written));
}

TEST_F(SessionKeeperTest, AGuestLeavesEverythingOfTheFirstWindowAlone) {
    const QByteArray left = LeaveSession();
    Put(folders.backupProject, "the first one's");
    settings.WriteSettingInt(kSettingsSection, QStringLiteral("BackupClosed"), 0);
    Session().SetGuest();
    keeper.Begin({});
    EXPECT_TRUE(questions.isEmpty());
    AddSynth();
    Session().WriteBackup(true);
    ASSERT_TRUE(keeper.End(error));
    Session().Saver().Finish();
    EXPECT_EQ(Content(folders.backupProject), "the first one's");
    EXPECT_EQ(Content(folders.currentProject), left);
    EXPECT_EQ(Mark("BackupClosed"), 0);
}

TEST_F(SessionKeeperTest, BackupsThatFailAreToldOnceUntilOneIsWritten) {
    QSignalSpy tellings(workstation.get(), &CWorkstation::Notice);
    const auto backUp = [this] {
        Session().WriteBackup(false);
        Session().Saver().Finish();
    };
    QDir().mkdir(folders.backupProject);
    backUp();
    backUp();
    EXPECT_EQ(tellings.size(), 1);
    QDir().rmdir(folders.backupProject);
    backUp();
    QDir(folders.program).remove(QStringLiteral("backup.prg"));
    QDir().mkdir(folders.backupProject);
    backUp();
    EXPECT_EQ(tellings.size(), 2);
}

// The whole program, without a display.
class ProgramTest : public DocumentTest {
protected:
    std::unique_ptr<QProcess> Start() {
        auto program = std::make_unique<QProcess>();
        program->start(QStringLiteral(QUIB_BIN_DIR "/quib"),
                       {QStringLiteral("--portable"), folders.program, QStringLiteral("--no-audio"),
                        QStringLiteral(QUIB_SOURCE_DIR "/examples/HouseMusic.prg")});
        EXPECT_TRUE(program->waitForStarted());
        return program;
    }
    bool WaitForFile(const QString& path) {
        return QTest::qWaitFor([&] { return QFileInfo(path).size() > 0; }, 20000);
    }
    // Milliseconds from the signal to the end; -1 when it does not end.
    static qint64 EndBy(QProcess& program, int signal) {
        QElapsedTimer clock;
        clock.start();
        ::kill(static_cast<pid_t>(program.processId()), signal);
        return program.waitForFinished(10000) ? clock.elapsed() : -1;
    }
};

TEST_F(ProgramTest, ASignalEndsItProperlyWhateverIsOpenAndAnotherStartWaitsForItsFolder) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the whole program is not built with ThreadSanitizer";
#endif
#ifdef QUIB_SANITIZED
    constexpr qint64 kPatience = 10000;
#else
    constexpr qint64 kPatience = 1500;  // of a machine that does other things as well
#endif
    const auto first = Start();
    ASSERT_TRUE(WaitForFile(folders.backupProject)) << "it has loaded and shows its greeting";
    const QByteArray backup = Content(folders.backupProject);
    const auto second = Start();
    EXPECT_FALSE(second->waitForFinished(1500)) << "it asks";
    const qint64 secondEnd = EndBy(*second, SIGHUP);
    EXPECT_TRUE(secondEnd >= 0 && secondEnd < kPatience) << secondEnd;
    EXPECT_EQ(Content(folders.backupProject), backup);

    const qint64 end = EndBy(*first, SIGTERM);
    EXPECT_TRUE(end >= 0 && end < kPatience) << end;
    EXPECT_EQ(first->exitStatus(), QProcess::NormalExit);
    EXPECT_GT(Content(folders.currentProject).size(), 100000);
    const CSettings after(folders.program + QStringLiteral("settings.ini"));
    EXPECT_EQ(after.ReadSettingInt(kSettingsSection, QStringLiteral("BackupClosed"), -1), 1);
}

}  // namespace
}  // namespace quib
