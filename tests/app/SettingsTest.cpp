// SPDX-License-Identifier: GPL-3.0-or-later
// Settings, folders, placements, recent files, and what a start makes of the marks of the last run.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "app/CRecentFiles.h"
#include "app/Dialogs.h"
#include "app/StartUp.h"
#include "document/CSettings.h"
#include "document/Folders.h"

namespace quib {
namespace {

class SettingsTest : public testing::Test {
protected:
    QString Path(const char* name) const { return folder.filePath(QLatin1String(name)); }
    void Touch(const QString& path) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }

    QTemporaryDir folder;
    CSettings settings{folder.filePath(QStringLiteral("settings.ini"))};
};

TEST_F(SettingsTest, ValuesComeBackFromTheFileInTheirKind) {
    const QString hard = QStringLiteral("a=\"b\\c\"\r\n;é \t[x] ");
    settings.WriteSettingString("Settings", "Text", hard);
    settings.WriteSettingString("Settings", "Digits", "96");
    settings.WriteSettingString("Settings", "Empty", "");
    settings.WriteSettingInt("Settings", "Number", -7);
    settings.WriteSettingInt("Other", "Number", 2147483647);
    settings.Flush();

    const CSettings again(settings.File());
    EXPECT_EQ(again.ReadSettingString("Settings", "Text"), hard);
    EXPECT_EQ(again.ReadSettingString("Settings", "Digits"), "96");
    EXPECT_EQ(again.ReadSettingInt("Settings", "Digits", 5), 5) << "a text is no integer";
    EXPECT_EQ(again.ReadSettingInt("Settings", "Number", 5), -7);
    EXPECT_EQ(again.ReadSettingString("Settings", "Number"), "") << "an integer is no text";
    EXPECT_EQ(again.ReadSettingInt("Other", "Number", 0), 2147483647);
    EXPECT_EQ(again.ReadSettingInt("Nowhere", "Number", 3), 3);
}

TEST_F(SettingsTest, OnlyOneIsOnAndASectionGoesWhole) {
    settings.WriteSettingInt("Settings", "Flag", 2);
    EXPECT_FALSE(settings.IsOn("Flag"));
    settings.SetOn("Flag", true);
    EXPECT_TRUE(settings.IsOn("Flag"));
    settings.WriteSettingString("RecentFiles", "Project1", "x");
    settings.DeleteSettingSection("RecentFiles");
    EXPECT_EQ(settings.ReadSettingString("RecentFiles", "Project1"), "");
    EXPECT_TRUE(settings.IsOn("Flag"));
}

TEST_F(SettingsTest, DamagedFilesCostTheirBadLinesOnly) {
    QFile file(Path("damaged.ini"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("Lost=1\n[Settings]\n=3\nBackupTime=12x\nName=\"open\nGood=4\n\"\n[\nBad]=\"\n\xff\xfe=\x80\n");
    file.close();
    const CSettings damaged(Path("damaged.ini"));
    EXPECT_EQ(damaged.ReadSettingInt("Settings", "Good", 0), 4);
    EXPECT_EQ(damaged.ReadSettingInt("Settings", "BackupTime", 2), 2);
}

TEST_F(SettingsTest, PlacementsKeepFortyPixelsOnTheScreen) {
    const QSize screen(1366, 768);
    EXPECT_EQ(CSettings::ClampPlacement({-5000, -5000, 300, 200}, screen), QRect(-260, -160, 300, 200));
    EXPECT_EQ(CSettings::ClampPlacement({9000, 9000, 300, 200}, screen), QRect(1326, 728, 300, 200));
    EXPECT_EQ(CSettings::ClampPlacement({10, 10, 20, 20}, screen), QRect(10, 10, 100, 100));
    EXPECT_EQ(CSettings::ClampPlacement({0, 0, 5000, 5000}, screen), QRect(0, 0, 1366, 768));
    EXPECT_EQ(CSettings::Centred({445, 436}, screen), QRect(460, 166, 445, 436));
}

TEST_F(SettingsTest, ToolWindowsOfOneSizeKeepOnlyTheirPlace) {
    settings.WriteWindowPlacement("Arpeggiator", {50, 60, 700, 500});
    settings.WriteWindowPlacement("Ball", {50, 60, 700, 500});
    settings.WriteWindowPlacement("Main", {10, 20, 500, 200});
    PrepareToolPlacements(settings);
    EXPECT_EQ(settings.ReadSettingInt("Windows", "ArpeggiatorLeft", 0), 50);
    EXPECT_EQ(settings.ReadSettingInt("Windows", "ArpeggiatorWidth", 0), 270);
    EXPECT_EQ(settings.ReadSettingInt("Windows", "ArpeggiatorHeight", 0), 150);
    EXPECT_EQ(settings.ReadSettingInt("Windows", "BallWidth", 0), 445);
    EXPECT_EQ(settings.ReadSettingInt("Windows", "BallHeight", 0), 500);
    EXPECT_EQ(MainPlacement(settings).size(), QSize(977, 300));
}

TEST_F(SettingsTest, FoldersAreMadeAndKept) {
    const Folders folders(Path("program"));
    PrepareFolders(folders, settings);
    for (const char* const name :
         {"PatternDir", "PresetDir", "InstrumentDir", "ProgramDir", "EffectDir", "PluginDir", "CurrentDir"}) {
        const QString kept = settings.ReadSettingString("Settings", name);
        EXPECT_TRUE(kept.startsWith(folders.program) && kept.endsWith('/') && QDir(kept).exists()) << name;
    }
    EXPECT_EQ(FindProgramFolder(settings), folders.program) << "the next start takes the folder that was kept";
    EXPECT_EQ(FindProgramFolder(settings, Path("other")), Path("other/"));
}

TEST_F(SettingsTest, RecentFilesLoseGapsAndDuplicates) {
    CRecentFiles recent(settings);
    EXPECT_TRUE(recent.Rebuild().isEmpty());
    settings.WriteSettingString("RecentFiles", "Project2", "/b.prg");
    settings.WriteSettingString("RecentFiles", "Project3", "/B.prg");
    settings.WriteSettingString("RecentFiles", "Project7", "/b.prg");
    settings.WriteSettingString("RecentFiles", "Project9", "/beyond.prg");
    EXPECT_EQ(recent.Rebuild(), QStringList({"/b.prg", "/B.prg"}));
    EXPECT_EQ(settings.ReadSettingString("RecentFiles", "Project1"), "/b.prg");
    EXPECT_EQ(settings.ReadSettingString("RecentFiles", "Project9"), "");
    for (int i = 0; i < 12; ++i) recent.Add(QString("/%1.prg").arg(i));
    recent.Add("/5.prg");
    EXPECT_EQ(recent.Rebuild(),
              QStringList({"/5.prg", "/11.prg", "/10.prg", "/9.prg", "/8.prg", "/7.prg", "/6.prg", "/4.prg"}));
}

TEST_F(SettingsTest, AStartFollowsTheMarksOfTheLastRun) {
    EXPECT_EQ(ChooseStartProject(0, 1, 3000), EStartProject::kCurrent);
    EXPECT_EQ(ChooseStartProject(0, 0, 3000), EStartProject::kAsk);
    EXPECT_EQ(ChooseStartProject(0, 0, 0), EStartProject::kCurrent) << "no question without a backup time";
    EXPECT_EQ(ChooseStartProject(0, 0, -1500), EStartProject::kCurrent);
    EXPECT_EQ(ChooseStartProject(1, 0, 3000), EStartProject::kEmpty);
    EXPECT_EQ(ChooseStartProject(1, 1, 0), EStartProject::kEmpty);

    const auto start = [this] {
        CSettings run(settings.File());
        return MarkStart(run);
    };
    const CrashMarks first = start();
    EXPECT_EQ(first.errorClosed, 0);
    EXPECT_EQ(first.backupClosed, 1);
    EXPECT_EQ(start().errorClosed, 1) << "the first run ended while it loaded";
    CSettings loaded(settings.File());
    MarkLoaded(loaded);
    const CrashMarks afterCrash = start();
    EXPECT_EQ(afterCrash.errorClosed, 0);
    EXPECT_EQ(afterCrash.backupClosed, 0) << "the run before ended without its last words";
    CSettings ended(settings.File());
    MarkLoaded(ended);
    MarkEnd(ended);
    EXPECT_EQ(start().backupClosed, 1);
}

TEST_F(SettingsTest, BackupsComeInTimeAlwaysOrNever) {
    CBackupCountdown countdown;
    countdown.Start(2);
    int ticks = 1;
    while (!countdown.Tick()) ++ticks;
    EXPECT_EQ(ticks, 3000);
    countdown.Start(0);
    EXPECT_TRUE(countdown.Tick());
    EXPECT_TRUE(countdown.Tick());
    countdown.Start(-1);
    for (int i = 0; i < 5000; ++i) ASSERT_FALSE(countdown.Tick());
}

TEST_F(SettingsTest, OnlyWhatChangedOpensDevicesAnew) {
    AudioChoice choice = ReadAudioChoice(settings);
    EXPECT_EQ(choice.sampleRate, "44100");
    EXPECT_EQ(choice.timebase, "96");
    const auto changes = [&] { return StoreAudioChoice(settings, choice); };
    EXPECT_FALSE(changes().output);
    choice.timebase = "192";
    EXPECT_EQ(changes().timebase, 192);
    EXPECT_FALSE(changes().output || changes().midi);
    choice.midiInDevice = "OFF";
    const AudioChanges midi = changes();
    EXPECT_TRUE(midi.midi && !midi.output);
    choice.sampleRate = "22050";
    EXPECT_TRUE(changes().output);
    EXPECT_EQ(settings.ReadSettingInt("AudioSettings", "SampleRate", 0), 22050);
    choice.bufferSize = "none";
    EXPECT_TRUE(changes().output);
    EXPECT_EQ(settings.ReadSettingInt("AudioSettings", "BufferSize", 1), 0);
    choice.outputDevice = QString(300, 'x');
    EXPECT_TRUE(changes().output);
    EXPECT_FALSE(changes().output) << "cut to what is kept";
}

}  // namespace
}  // namespace quib
