// SPDX-License-Identifier: GPL-3.0-or-later
// The export dialog as a user has it: what it offers, what it writes, and that it lets go.
#include <QLabel>
#include <QPointer>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include "app/CMainWindow.h"
#include "app/CPluginCatalog.h"
#include "app/Commands.h"
#include "app/export/CExportDialog.h"
#include "document/DocumentFixture.h"

namespace quib {
namespace {

class ExportDialogTest : public DocumentTest {
protected:
    ExportDialogTest()
        : catalog(QStringLiteral(QUIB_BIN_DIR "/quib-scan"), File("catalog.json")),
          window(*workstation, catalog, [](CMainWindow&) { return new QLabel; }) {
        QString error;
        EXPECT_TRUE(Session().LoadProject(QStringLiteral(QUIB_SOURCE_DIR "/examples/HouseMusic.prg"), error));
        settings.WriteSettingString(QStringLiteral("Export"), QStringLiteral("Folder"), File("out"));
        Open();
    }
    ~ExportDialogTest() override { delete dialog; }

    void Open() {
        delete dialog;
        QTest::keyClick(&window, Qt::Key_E, Qt::ControlModifier);
        window.Run(command::kExport);
        dialog = window.findChild<CExportDialog*>();
        ASSERT_NE(dialog, nullptr);
    }
    const ExportPage& Page() const { return dialog->Page(); }
    void Choose(CSegments* segments, int index) {
        segments->Choose(index);
        Q_EMIT segments->Changed(index);
    }
    bool WaitForEnd() {
        return QTest::qWaitFor([this] { return !dialog->IsWriting(); }, 60000);
    }
    // What the dialog has just written, and what quib-render writes of the session with these options.
    QByteArray Exported() const { return Bytes(File("out/HouseMusic.wav")); }
    QByteArray Rendered(const QStringList& options) {
        QFile project(File("session.prg"));
        EXPECT_TRUE(project.open(QIODevice::WriteOnly));
        project.write(QByteArray::fromStdString(Session().Bytes()));
        project.close();
        const QStringList words =
            QStringList{File("session.prg"),          File("rendered.wav"),     QStringLiteral("--title"),
                        QStringLiteral("HouseMusic"), QStringLiteral("--tail"), QStringLiteral("0")} +
            options;
        EXPECT_EQ(QProcess::execute(QStringLiteral(QUIB_BIN_DIR "/quib-render"), words), 0);
        return Bytes(File("rendered.wav"));
    }
    static QByteArray Bytes(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }
    QStringList Written() const { return QDir(File("out")).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    QString File(const char* name) const { return folder.filePath(QLatin1String(name)); }

    CPluginCatalog catalog;
    CMainWindow window;
    QPointer<CExportDialog> dialog;
};

TEST_F(ExportDialogTest, EnterWritesTheMixBesideASessionThatStaysAsItIs) {
    EXPECT_EQ(Page().length->text(), "2:38.710") << "82 bars at 124 beats a minute";
    Page().from->setValue(3);
    Page().to->setValue(4);
    EXPECT_EQ(Page().length->text(), "0:01.935");
    EXPECT_EQ(Page().example->text(), "HouseMusic.wav");
    EXPECT_TRUE(Page().range->IsOff(3));
    EXPECT_TRUE(dialog->Settings().format.dither);
    const std::string before = Session().Bytes();
    QTest::keyClick(Page().name, Qt::Key_Return);
    ASSERT_TRUE(dialog->IsWriting());
    EXPECT_FALSE(Page().settings->isEnabled());
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(Written(), QStringList("HouseMusic.wav")) << Page().status->text().toStdString();
    EXPECT_TRUE(Page().existing->text().contains(QLatin1String("replaced")));
    EXPECT_EQ(Session().Bytes(), before);
    EXPECT_FALSE(Session().IsModified());

    // What was chosen is there the next time; a folder that is none fails and says so.
    Choose(Page().format, static_cast<int>(ESoundFormat::kMp3));
    Choose(Page().files, 1);
    Choose(Page().loudness, 2);
    EXPECT_TRUE(Page().example->text().endsWith(QLatin1String("Kick.mp3"))) << Page().example->text().toStdString();
    settings.WriteSettingString(QStringLiteral("Export"), QStringLiteral("Folder"), File("out/HouseMusic.wav"));
    Open();
    Page().start->click();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_NE(Page().note->text().indexOf(QLatin1String("HouseMusic.wav")), -1) << Page().note->text().toStdString();
    Open();
    EXPECT_EQ(dialog->Settings().format.kind, ESoundFormat::kWave);
    EXPECT_EQ(Written().size(), 1);
}

TEST_F(ExportDialogTest, TheMixOfARangeIsThatOfQuibRenderByteForByte) {
    const auto write = [this] {
        Page().tail->setChecked(false);
        Page().start->click();
        EXPECT_TRUE(WaitForEnd());
        return Exported();
    };
    Page().dither->setChecked(false);
    Page().from->setValue(2);
    Page().to->setValue(3);
    const QByteArray song = write();
    EXPECT_NEAR(static_cast<double>(song.size()) / 4, 4 * 60.0 / 124 * 44100, 60) << "a bar, and the header";
    EXPECT_EQ(
        Rendered({QStringLiteral("--from"), QStringLiteral("16"), QStringLiteral("--steps"), QStringLiteral("16")}),
        song);
    EXPECT_TRUE(Page().range->IsOff(3));
    workstation->Song().SetMarker(16, QStringLiteral("A"));
    workstation->Song().SetMarker(24, QStringLiteral("B"));
    workstation->Song().SetMarker(32, QStringLiteral("C"));
    EXPECT_FALSE(Page().range->IsOff(3));
    Choose(Page().range, 3);
    EXPECT_EQ(Page().length->text(), "0:01.935");
    EXPECT_EQ(write(), song) << "from the first marker to the last";
    EXPECT_EQ(Rendered({QStringLiteral("--markers")}), song);
    workstation->Song().SetLoop({16, 32});
    window.ShowExport(EExportRange::kLoop);
    EXPECT_EQ(dialog->Settings().range, EExportRange::kLoop);
    EXPECT_EQ(write(), song);
    EXPECT_EQ(Rendered({QStringLiteral("--loop")}), song);
}

TEST_F(ExportDialogTest, EscCancelsWithoutAnyFileAndTheDialogMayGoMeanwhile) {
    Choose(Page().files, 1);
    Choose(Page().loudness, 1);
    Page().start->click();
    ASSERT_TRUE(dialog->IsWriting());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !Written().isEmpty(); }, 20000)) << "under temporary names";
    // A new project does not disturb what is written of the old one.
    Session().NewProject();
    QTest::keyClick(dialog, Qt::Key_Escape);
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(Written(), QStringList());
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(Page().start->isEnabled()) << "there is nothing to play any more";
    QString error;
    ASSERT_TRUE(Session().LoadProject(QStringLiteral(QUIB_SOURCE_DIR "/examples/HouseMusic.prg"), error));
    EXPECT_TRUE(Page().start->isEnabled());
    Page().start->click();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !Written().isEmpty(); }, 20000));
    delete dialog;
    EXPECT_EQ(Written(), QStringList());
}

}  // namespace
}  // namespace quib
