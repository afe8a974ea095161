// SPDX-License-Identifier: GPL-3.0-or-later
// Sound files in the program: what a drop offers, and that the two windows for them show what is in a file.
#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QTest>
#include <QTimer>

#include "app/CMainWindow.h"
#include "app/CPluginCatalog.h"
#include "bench/RhythmMaterial.h"
#include "document/DocumentFixture.h"
#include "editors/loopcreator/CWinControlLoopCreator.h"
#include "editors/rhythm/CWinControlRhythm.h"
#include "export/loops/LoopCut.h"

namespace quib {
namespace {

class SoundToolsTest : public DocumentTest {
protected:
    SoundToolsTest()
        : catalog(QStringLiteral(QUIB_BIN_DIR "/quib-scan"), File("catalog.json")),
          window(*workstation, catalog, [](CMainWindow&) { return new QLabel; }) {
        window.ApplySettings();
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    // With drums at 104 BPM.
    void WriteBeat() {
        const material::Rendered made = material::Render({.tempo = 104, .kind = 1}, 12);
        std::string error;
        const SoundClip clip{material::kRate, 1, made.mono, made.mono};
        EXPECT_TRUE(WriteLoopFile(File("beat.wav").toStdString(), clip, {}, false, error)) << error;
    }

    void Drop(QWidget& onto, const QString& path) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&onto, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&onto, &event);
    }
    // Takes the entry of the menu that the drop opens.
    void DropAndChoose(const QString& path, int entry) {
        QTimer::singleShot(50, [this, entry] {
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr) << "nothing is offered";
            for (const QAction* const action : menu->actions()) offered += action->text();
            menu->setActiveAction(menu->actions()[entry]);
            QTest::keyClick(menu, Qt::Key_Return);
        });
        Drop(window, path);
    }
    template <class Window>
    Window& OpenByKey(ETool tool) {
        QTest::keyClick(&window, FindTool(tool)->key);
        return dynamic_cast<Window&>(*window.Tools().Find(tool));
    }
    template <class Window>
    static bool Finish(Window& shown) {
        return QTest::qWaitFor(
            [&] {
                shown.FollowEngine();
                return !shown.IsBusy();
            },
            20000);
    }

    CPluginCatalog catalog;
    CMainWindow window;
    QStringList offered;
};

TEST_F(SoundToolsTest, TheDetectorFindsTheTempoOfAFileAndSetsIt) {
    WriteBeat();
    auto& detector = OpenByKey<CWinControlRhythm>(ETool::kRhythm);
    Drop(detector, File("beat.wav"));
    ASSERT_TRUE(Finish(detector));
    EXPECT_NEAR(detector.Tempo(), 104, 0.05);
    detector.SetTempoOfProject();
    EXPECT_NEAR(workstation->Audio().settings.tempo.Get(), 104, 0.05);
    detector.CutLoops();
    auto& creator = dynamic_cast<CWinControlLoopCreator&>(*window.Tools().Find(ETool::kLoopCreator));
    ASSERT_TRUE(Finish(creator));
    EXPECT_NEAR(creator.Cut().tempo, 104, 0.05) << "the grid came along";
}

TEST_F(SoundToolsTest, TheCreatorCutsAFileOnItsGridAndWritesLoopsThatPlayersFind) {
    WriteBeat();
    auto& creator = OpenByKey<CWinControlLoopCreator>(ETool::kLoopCreator);
    Drop(creator, File("beat.wav"));
    ASSERT_TRUE(Finish(creator));
    EXPECT_NEAR(creator.Cut().tempo, 104, 0.05);
    creator.SetBars(2);
    creator.AddToList();
    ASSERT_EQ(creator.WriteLoops(), 1);
    const QStringList written = QDir(folders.loops).entryList({QStringLiteral("beat*.wav")});
    ASSERT_EQ(written.size(), 1);
    SoundClip loop;
    std::string error;
    ASSERT_TRUE(ReadClip((folders.loops + written.front()).toStdString(), loop, error)) << error;
    EXPECT_EQ(loop.Frames(), LoopFrames(8, material::kRate, creator.Cut().tempo));
}

TEST_F(SoundToolsTest, TheLoopOfTheSongIsAsLongAsItIsInTheSongAndEndsInItsBeginning) {
    auto& creator = OpenByKey<CWinControlLoopCreator>(ETool::kLoopCreator);
    creator.TakeSong();
    EXPECT_FALSE(creator.IsBusy()) << "there is no loop yet";
    AddSynth();
    Contents().SetPattern(At(0)->Id(), 0, std::make_shared<const CPattern>(16, std::vector<Note>{{15, 1, 60, 127}}),
                          QString());
    workstation->Song().PutSelectedPatterns();
    workstation->Song().SetLoop(StepRange{0, 16});
    creator.TakeSong();
    ASSERT_TRUE(Finish(creator));
    EXPECT_EQ(creator.Cut().beats, 4);
    EXPECT_NEAR(creator.Cut().tempo, workstation->Audio().settings.tempo.Get(), 0.01);
    creator.AddToList();
    ASSERT_EQ(creator.WriteLoops(), 1);
    const QStringList written = QDir(folders.loops).entryList({QStringLiteral("*.wav")}, QDir::Files, QDir::Time);
    ASSERT_FALSE(written.isEmpty());
    SoundClip loop;
    std::string error;
    ASSERT_TRUE(ReadClip((folders.loops + written.front()).toStdString(), loop, error)) << error;
    const auto rate = workstation->Audio().Format().sampleRate;
    EXPECT_EQ(loop.Frames(), std::llround(16 * 15.0 * rate / workstation->Audio().settings.tempo.Get()));
    const auto loudest = [&](std::int64_t from, std::int64_t to) {
        float most = 0;
        for (auto at = from; at < to; ++at) most = std::max(most, std::abs(loop.left[static_cast<std::size_t>(at)]));
        return most;
    };
    EXPECT_GT(loudest(loop.Frames() * 15 / 16, loop.Frames()), 0.01F) << "the last step";
    EXPECT_GT(loudest(0, loop.Frames() / 32), 0.001F) << "it rings on into the first";
    EXPECT_LT(loudest(loop.Frames() / 2, loop.Frames() * 14 / 16), 0.001F);
}

TEST_F(SoundToolsTest, AWaveFileOnTheConsoleIsOfferedWhatCanBeDoneWithIt) {
    WriteBeat();
    DropAndChoose(File("beat.wav"), 0);
    ASSERT_GE(offered.size(), 3);
    auto* const creator = dynamic_cast<CWinControlLoopCreator*>(window.Tools().Find(ETool::kLoopCreator));
    ASSERT_NE(creator, nullptr);
    ASSERT_TRUE(Finish(*creator));
    EXPECT_NEAR(creator->Cut().tempo, 104, 0.05);
    creator->hide();
    DropAndChoose(File("beat.wav"), 2);
    EXPECT_TRUE(QFile::exists(folders.loops + QStringLiteral("beat.wav")));
    DropAndChoose(folders.loops + QStringLiteral("beat.wav"), 2);
    EXPECT_EQ(told, "") << "one that is there already";
}

}  // namespace
}  // namespace quib
