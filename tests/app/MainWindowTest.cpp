// SPDX-License-Identifier: GPL-3.0-or-later
// Menus, keys, files dropped, and the question about unsaved work, on the window without its console.
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

#include "app/CMainWindow.h"
#include "app/CPluginCatalog.h"
#include "app/Commands.h"
#include "app/Dialogs.h"
#include "controls/Mnemonics.h"
#include "document/DocumentFixture.h"
#include "editors/base/CToolWindow.h"
#include "texts/Texts.h"

namespace quib {
namespace {

class MainWindowTest : public DocumentTest {
protected:
    MainWindowTest()
        : catalog(QStringLiteral(QUIB_BIN_DIR "/quib-scan"), File("catalog.json")),
          window(*workstation, catalog, [](CMainWindow&) { return new QLabel; }) {
        window.ApplySettings();
        window.show();
        QCoreApplication::processEvents();
    }
    ~MainWindowTest() override { SetLanguage(ELanguage::kEnglish); }

    // Presses a button of the next message box, once it is there.
    void Answer(QMessageBox::StandardButton button) {
        QTimer::singleShot(50, [this, button] {
            if (auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                asked = box->text();
                box->button(button)->click();
            }
        });
    }
    bool IsOn(int number) { return window.Action(number)->isChecked(); }
    QStringList RecentFiles() {
        QStringList paths;
        for (int i = 0; i < CRecentFiles::kMost; ++i) {
            if (const QAction* const action = window.Action(command::kRecentFile0 + i)) paths.append(action->toolTip());
        }
        return paths;
    }
    QString SaveSong(const char* name) {
        QString error;
        EXPECT_TRUE(workstation->Session().SaveProject(File(name), error)) << error.toStdString();
        return File(name);
    }
    void Drop(const QString& path) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&window, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&window, &event);
        QCoreApplication::processEvents();
    }

    CPluginCatalog catalog;
    CMainWindow window;
    QString asked;
};

TEST_F(MainWindowTest, TogglesAreKeptAndShown) {
    for (const auto& [number, name] :
         {std::pair(command::kAutomaticScroll, "AutomaticScroll"), std::pair(command::kPresetOn, "PresetOn"),
          std::pair(command::kSoloCumul, "SoloCumulMode"), std::pair(command::kLevelOff, "LevelOffWhenLoadingInst")}) {
        EXPECT_TRUE(window.Run(number));
        EXPECT_TRUE(IsOn(number) && settings.IsOn(name)) << name;
        window.Run(number);
        EXPECT_FALSE(IsOn(number) || settings.IsOn(name)) << name;
        settings.WriteSettingInt("Settings", name, 5);
        window.ApplySettings();
        EXPECT_FALSE(IsOn(number)) << "only 1 is on";
    }
    settings.SetOn("KeyboardAZERTYUIOP", true);
    settings.SetOn("MasterControlDownPosition", true);
    window.ApplySettings();
    EXPECT_FALSE(settings.IsOn("KeyboardAZERTYUIOP") || settings.IsOn("MasterControlDownPosition"));
    EXPECT_FALSE(window.Run(command::kKeyboardAzerty)) << "no menu has it";
}

TEST_F(MainWindowTest, OneLanguageAtMostIsOnAndTheMenusFollowIt) {
    const auto choose = [this](int number) {
        window.Run(number);
        QCoreApplication::processEvents();
    };
    const auto first = [this] { return PlainMenuText(window.menuBar()->actions().front()->text()); };
    choose(command::kInfoFrench);
    EXPECT_FALSE(IsOn(command::kInfoFrench)) << "a flag that was never kept counts as on, and goes off";
    choose(command::kInfoFrench);
    EXPECT_TRUE(IsOn(command::kInfoFrench));
    EXPECT_EQ(first(), "Fichier");
    EXPECT_EQ(settings.ReadSettingInt("Settings", "French", 0), 1);
    choose(command::kInfoEnglish);
    EXPECT_TRUE(IsOn(command::kInfoEnglish));
    EXPECT_FALSE(IsOn(command::kInfoFrench));
    EXPECT_EQ(first(), "File");
    choose(command::kInfoEnglish);
    EXPECT_FALSE(IsOn(command::kInfoEnglish) || IsOn(command::kInfoFrench));
}

TEST_F(MainWindowTest, SavingIsGreyUntilTheProjectHasAFileAndTheTitleTellsUnsavedWork) {
    EXPECT_FALSE(window.Action(command::kSave)->isEnabled());
    AddSynth();
    EXPECT_TRUE(window.isWindowModified());
    const QString path = SaveSong("My song.prg");
    EXPECT_TRUE(window.Action(command::kSave)->isEnabled());
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_TRUE(window.windowTitle().startsWith("My song"));
    workstation->Stack().RenameInstrument(0, "Lead");
    EXPECT_TRUE(window.isWindowModified());
    window.Run(command::kSave);
    workstation->Session().Saver().Finish();
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_EQ(RecentFiles(), QStringList(path));
    workstation->Changes().Steps().undo();
    EXPECT_TRUE(window.isWindowModified()) << "undone beyond what is on disk";
    workstation->Changes().Steps().redo();
    EXPECT_FALSE(window.isWindowModified());
    window.Run(command::kNew);
    EXPECT_FALSE(window.Action(command::kSave)->isEnabled());
}

TEST_F(MainWindowTest, NoTextOfAToolWindowIsCutInEitherLanguage) {
    AddSynth();
    for (const ELanguage language : {ELanguage::kEnglish, ELanguage::kFrench}) {
        SetLanguage(language);
        for (const ETool tool : {ETool::kPianoRoll, ETool::kAutomation, ETool::kArpeggiator, ETool::kBall,
                                 ETool::kTutorial, ETool::kRhythm, ETool::kLoopCreator}) {
            window.OpenTool(tool);
            CToolWindow& opened = *window.Tools().Find(tool);
            std::vector<std::string> cut;
            opened.Canvas().onCut = [&](const QString& text, const QRectF& room) {
                // A folder is as long as it is.
                if (!text.contains(u'/')) cut.push_back(text.toStdString() + " in " + std::to_string(room.width()));
            };
            opened.Retranslate();
            QCoreApplication::processEvents();
            EXPECT_TRUE(cut.empty()) << testing::PrintToString(cut);
            opened.Canvas().onCut = nullptr;
        }
    }
}

TEST_F(MainWindowTest, UnsavedWorkIsAskedForBeforeItIsThrownAway) {
    AddSynth();
    const QString path = SaveSong("song.prg");
    workstation->Stack().RenameInstrument(0, "Lead");
    Answer(QMessageBox::Cancel);
    window.Run(command::kNew);
    EXPECT_TRUE(asked.contains("song")) << asked.toStdString();
    ASSERT_EQ(workstation->Stack().Instruments().size(), 1U);
    Answer(QMessageBox::Save);
    window.Run(command::kNew);
    EXPECT_TRUE(workstation->Stack().Instruments().empty());
    Drop(path);
    ASSERT_EQ(workstation->Stack().Instruments().size(), 1U);
    EXPECT_EQ(At(0)->title, "Lead") << "it was saved";
    workstation->Stack().RenameInstrument(0, "Lost");
    Answer(QMessageBox::Discard);
    Drop(path);
    EXPECT_EQ(At(0)->title, "Lead");
}

TEST_F(MainWindowTest, FilesGoWhereTheyBelongWhenDropped) {
    AddSynth();
    QString error;
    ASSERT_TRUE(workstation->Stack().SaveInstrument(0, File("a.ist"), error));
    workstation->Contents().SetPattern(At(0)->Id(), 3,
                                       std::make_shared<const CPattern>(16, std::vector<Note>{{0, 1, 60, 99}}), "Draw");
    ASSERT_TRUE(workstation->Contents().SavePattern(0, File("a.ptn"), error));
    PluginAt(0).SetParameter(0, 0.8F);
    ASSERT_TRUE(workstation->Places().SaveBank(Place(0), File("a.fxb"), error));
    Drop(File("a.ist"));
    ASSERT_EQ(workstation->Stack().Instruments().size(), 2U);
    EXPECT_TRUE(At(1)->patterns[3].ForEdit()->Notes().empty());
    Drop(File("a.ptn"));
    EXPECT_EQ(At(1)->patterns[3].ForEdit()->Notes().size(), 1U) << "into the instrument that is shown";
    Drop(File("a.fxb"));
    EXPECT_NEAR(PluginAt(1).Parameter(0), 0.8F, 0.2F);
    Drop(QStringLiteral(QUIB_BIN_DIR "/PluginInstruments/QUIB synth.so"));
    EXPECT_EQ(workstation->Stack().Instruments().size(), 3U);
    Drop(QStringLiteral(QUIB_BIN_DIR "/PluginEffects/QUIB reverb.so"));
    EXPECT_NE(At(2)->inserts[0].ForEdit()->plugin, nullptr);
    Drop(QStringLiteral(QUIB_BIN_DIR "/PluginEffects/QUIB delay.so"));
    EXPECT_NE(At(2)->inserts[1].ForEdit()->plugin, nullptr);
    EXPECT_TRUE(told.isEmpty()) << told.toStdString();
}

TEST_F(MainWindowTest, SpacePlaysAndStopsButWritesInTextFields) {
    ASSERT_TRUE(workstation->OpenOutput("Silent"));
    window.StartTimer();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    window.centralWidget()->setFocus();
    const auto becomes = [this](bool playing) {
        return QTest::qWaitFor([&] { return workstation->Transport().IsPlaying() == playing; }, 5000);
    };
    QTest::keyClick(&window, Qt::Key_Space);
    EXPECT_TRUE(becomes(true));
    QTest::keyClick(&window, Qt::Key_Space);
    EXPECT_TRUE(becomes(false));
    QLineEdit field(&window);
    field.show();
    field.setFocus();
    QTest::keyClick(&field, Qt::Key_Space);
    EXPECT_EQ(field.text(), " ");
    QTest::qWait(100);
    EXPECT_FALSE(workstation->Transport().IsPlaying());
}

TEST_F(MainWindowTest, UndoIsInTheMenuByName) {
    AddSynth();
    QAction* const undo = window.Action(command::kUndo);
    EXPECT_EQ(undo->text(), "Undo Add instrument");
    QTest::keyClick(&window, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(workstation->Stack().Instruments().empty());
    QTest::keyClick(&window, Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(workstation->Stack().Instruments().size(), 1U);
}

// A window with something that can be deleted and nothing else.
class CDeletable : public QWidget, public CEditTarget {
public:
    bool CanEdit(EEdit command) const override { return command == EEdit::kDelete && deleted == 0; }
    void Edit(EEdit /*command*/) override { ++deleted; }
    int deleted = 0;
};

TEST_F(MainWindowTest, EditCommandsActInTheWindowThatHasTheFocusAndAreDisabledWhereTheyCannot) {
    EXPECT_FALSE(window.Action(command::kDelete)->isEnabled());
    CDeletable other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    window.StartTimer();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.Action(command::kDelete)->isEnabled(); }));
    EXPECT_FALSE(window.Action(command::kCopy)->isEnabled());
    QTest::keyClick(&other, Qt::Key_Delete);
    EXPECT_EQ(other.deleted, 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.Action(command::kDelete)->isEnabled(); }));
}

TEST_F(MainWindowTest, AToolWindowFollowsTheSelectionInTheLanguageAndKeepsItsPlace) {
    AddSynth();
    AddSynth();
    workstation->Stack().RenameInstrument(0, "Bass");
    workstation->Stack().RenameInstrument(1, "Lead");
    ASSERT_TRUE(window.Run(command::kTool0 + static_cast<int>(ETool::kArpeggiator)));
    CToolWindow& tool = *window.Tools().Find(ETool::kArpeggiator);
    EXPECT_EQ(tool.windowTitle(), "Lead - Arpeggiator");
    workstation->Selection().SetCurrent(0);
    EXPECT_EQ(tool.windowTitle(), "Bass - Arpeggiator");
    CControl& knob = *tool.Controls()[0]->Children().back();
    EXPECT_EQ(knob.Value(), &At(0)->arpeggiator.tempo);
    knob.ChangeByUser(2);
    EXPECT_EQ(UndoText(), "Arpeggiator tempo");
    workstation->Stack().RemoveInstrument(0);
    EXPECT_EQ(knob.Value(), &At(0)->arpeggiator.tempo);
    SetLanguage(ELanguage::kFrench);
    window.Tools().Retranslate();
    EXPECT_EQ(tool.windowTitle(), QString("Lead - ") + Text("Arpeggiator"));
    tool.Controls()[0]->Children().back()->ChangeByUser(3);
    EXPECT_EQ(UndoText(), Text("Arpeggiator tempo").toStdString());
    SetLanguage(ELanguage::kEnglish);
    tool.move(70, 80);
    tool.hide();
    EXPECT_EQ(settings.ReadWindowPlacement("Arpeggiator", {}).topLeft(), QPoint(70, 80));
    const qint64 painted = tool.PaintedPixels();
    workstation->Stack().RenameInstrument(0, "Pad");
    for (int tick = 0; tick < 3; ++tick) window.Tools().FollowEngine();
    EXPECT_EQ(tool.PaintedPixels(), painted);
    EXPECT_EQ(tool.windowTitle().left(4), "Lead") << "a hidden window follows nothing";
    window.OpenTool(ETool::kArpeggiator);
    EXPECT_EQ(tool.windowTitle().left(3), "Pad");
}

TEST_F(MainWindowTest, ARecentFileThatIsGoneIsToldAndTheProjectStays) {
    AddSynth();
    const QString path = SaveSong("song.prg");
    CRecentFiles(settings).Seed({File("gone.prg")});
    CMainWindow again(*workstation, catalog, [](CMainWindow&) { return new QLabel; });
    again.Open(File("gone.prg"));
    EXPECT_EQ(workstation->Session().ProjectPath(), path);
    EXPECT_EQ(workstation->Stack().Instruments().size(), 1U);
    const auto boxes = again.findChildren<QMessageBox*>();
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_TRUE(boxes[0]->text().contains("gone.prg"));
}

TEST_F(MainWindowTest, TheBackupDialogTakesWhatIsTyped) {
    for (const auto& [typed, minutes, ticks] : {std::tuple("5", 5, 7500), std::tuple("many", 0, 0),
                                                std::tuple("-1", -1, -1500), std::tuple("7 mn", 7, 10500)}) {
        QTimer::singleShot(50, [text = typed] {
            auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            dialog->findChild<QLineEdit*>("minutes")->setText(text);
            dialog->accept();
        });
        window.Run(command::kBackupTime);
        EXPECT_EQ(settings.ReadSettingInt("Settings", "BackupTime", 2), minutes);
        EXPECT_EQ(window.BackupCountdown().Ticks(), ticks);
    }
}

}  // namespace
}  // namespace quib
