// SPDX-License-Identifier: GPL-3.0-or-later
// What goes to files and comes back: sessions, instruments, patterns, backups, and saves that fail.
#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QThread>
#include <future>

#include "document/DocumentFixture.h"
#include "platform/CFileBytes.h"

namespace quib {
namespace {

class SessionFilesTest : public DocumentTest {};

TEST_F(SessionFilesTest, ASessionComesBackFromItsFile) {
    QString error;
    AddSynth();
    Stack().RenameInstrument(0, "Lead");
    Stack().SetStripColour(0, QColor(200, 100, 50));
    Stack().SetCollapsed(0, true);
    Contents().SetPattern(At(0)->Id(), 7, SomePattern(64), "Draw");
    Contents().SelectPattern(0, 7);
    Contents().SetPlaylistSteps(128);
    Session().Detector().gain = 3;
    workstation->Presets().SelectedPreset().Set(1);
    EXPECT_TRUE(Places().LoadPlugin({SlotPlace::EKind::kEffect, 0, 2}, "QUIB delay", error));
    EXPECT_TRUE(Places().LoadPlugin({SlotPlace::EKind::kMasterInsert, 0, 1}, "QUIB reverb", error));
    workstation->Audio().settings.tempo.Set(133.5F);
    PluginAt(0).SetParameter(2, 0.4F);
    QSignalSpy modified(&workstation->Changes(), &CChanges::ModifiedChanged);
    ASSERT_TRUE(Session().SaveProject(File("song.prg"), error)) << error.toStdString();
    EXPECT_FALSE(Session().IsModified());
    EXPECT_EQ(modified.size(), 1);
    EXPECT_EQ(Session().ProjectName(), "song");
    const std::string saved = Session().Bytes();

    Session().NewProject();
    EXPECT_TRUE(Stack().Instruments().empty());
    EXPECT_TRUE(Session().ProjectPath().isEmpty());
    EXPECT_EQ(Places().Slot({SlotPlace::EKind::kEffect, 0, 2})->plugin, nullptr);
    ASSERT_TRUE(Session().LoadProject(File("song.prg"), error)) << error.toStdString();
    EXPECT_TRUE(Session().Warnings().empty());
    EXPECT_TRUE(Session().Bytes() == saved);
    EXPECT_EQ(Stack().StripColour(0), QColor(200, 100, 50));
    EXPECT_TRUE(Stack().IsCollapsed(0));
    EXPECT_EQ(workstation->Selection().CurrentIndex(), 0);
    EXPECT_FALSE(Steps().canUndo());
}

TEST_F(SessionFilesTest, InstrumentAndPatternFilesGoFromOneInstrumentToAnother) {
    QString error;
    AddSynth();
    Contents().SetPattern(At(0)->Id(), 1, SomePattern(40), "Draw");
    PluginAt(0).SetParameter(1, 0.75F);
    ASSERT_TRUE(Stack().SaveInstrument(0, File("a.ist"), error));
    ASSERT_TRUE(Contents().SavePattern(0, File("a.ptn"), error));
    ASSERT_EQ(Stack().AddInstrument(File("a.ist"), error), 1) << error.toStdString();
    EXPECT_EQ(At(1)->patterns[1].ForEdit()->Notes(), SomePattern(40)->Notes());
    EXPECT_EQ(PluginAt(1).SaveBank(), PluginAt(0).SaveBank());
    AddSynth();
    ASSERT_TRUE(Contents().LoadPattern(2, File("a.ptn"), error));
    EXPECT_EQ(At(2)->patterns[1].ForEdit()->Notes(), SomePattern(40)->Notes());
    Steps().undo();
    EXPECT_TRUE(At(2)->patterns[1].ForEdit()->Notes().empty());
}

TEST_F(SessionFilesTest, BackupsAreKeptWithTheirTimesTenAtMost) {
    AddSynth();
    for (int minute = 10; minute < 22; ++minute) {
        QFile old(folders.backups + QString("backup-20200101-0000%1.prg").arg(minute));
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    }
    Session().WriteBackup(true);
    Session().WriteBackup(true);
    Session().Saver().Finish();
    const QStringList kept = Session().TimedBackups();
    ASSERT_EQ(kept.size(), 10);
    EXPECT_FALSE(kept.front().contains("backup-2020")) << "the newest comes first";
    EXPECT_TRUE(kept.back().endsWith("000013.prg"));
    const std::string now = Session().Bytes();
    QString error;
    Session().NewProject();
    ASSERT_TRUE(Session().LoadSession(folders.backupProject, "/x/song.prg", true, error)) << error.toStdString();
    EXPECT_TRUE(Session().Bytes() == now);
    EXPECT_TRUE(Session().IsModified());
    EXPECT_EQ(Session().ProjectPath(), "/x/song.prg");
}

TEST(AsyncSaveTest, ASlowDiskHoldsNobodyUpAndGetsTheNewestOnly) {
    std::promise<void> gate;
    std::shared_future<void> open = gate.get_future().share();
    std::vector<std::string> written;
    CAsyncSave saver([&, open](const std::filesystem::path&, const std::string& bytes, std::string& error) {
        open.wait();
        written.push_back(bytes);
        if (bytes == "bad") error = "disk full";
        return bytes != "bad";
    });
    std::vector<std::string> told;
    const auto tell = [&](const std::string& error) { told.push_back(error); };
    saver.Write("a", "1", tell);
    while (!saver.IsBusy()) std::this_thread::yield();
    for (const char* const bytes : {"2", "3", "4"}) saver.Write("b", bytes, tell);
    saver.Write("c", "bad", tell);
    saver.Poll();
    EXPECT_TRUE(told.empty());
    EXPECT_TRUE(saver.IsBusy());
    gate.set_value();
    saver.Finish();
    EXPECT_EQ(written, (std::vector<std::string>{"1", "4", "bad"}));
    EXPECT_EQ(told, (std::vector<std::string>{"", "", "", "", "disk full"}));
}

TEST_F(SessionFilesTest, AFailedSaveLeavesTheMarkOfUnsavedWork) {
    AddSynth();
    QString error;
    QFile blocking(File("file"));
    ASSERT_TRUE(blocking.open(QIODevice::WriteOnly));
    EXPECT_FALSE(Session().SaveProject(File("file/song.prg"), error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_TRUE(Session().IsModified());
    EXPECT_TRUE(Session().ProjectPath().isEmpty());
}

}  // namespace
}  // namespace quib
