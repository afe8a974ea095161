// SPDX-License-Identifier: GPL-3.0-or-later
// The menus of the main window, and the commands that only change settings.
#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QMenuBar>
#include <QUrl>

#include "app/CMainWindow.h"
#include "app/CPluginCatalog.h"
#include "app/Commands.h"
#include "app/Dialogs.h"
#include "app/Look.h"
#include "app/console/ConsoleParts.h"
#include "app/start/CDeviceBanner.h"
#include "controls/Mnemonics.h"
#include "document/CSettings.h"
#include "document/ShippedFiles.h"
#include "editors/playlist/LaunchMenu.h"
#include "texts/Texts.h"

namespace quib {

namespace {

struct ToggleEntry {
    int number;
    const char* text;
    const char* setting;
};
constexpr ToggleEntry kToggles[] = {
    {command::kAutomaticScroll, TextKey("Automatic Scroll"), "AutomaticScroll"},
    {command::kPresetOn, TextKey("Presets On"), "PresetOn"},
    {command::kSoloCumul, TextKey("Solo Cumul Mode"), "SoloCumulMode"},
    {command::kLevelOff, TextKey("Level off when loading an Instrument"), "LevelOffWhenLoadingInst"},
};

}  // namespace

QAction* CMainWindow::Action(int number) const {
    const auto place = actions.find(number);
    return place == actions.end() ? nullptr : place->second;
}

bool CMainWindow::Run(int number) {
    QAction* const action = Action(number);
    if (action == nullptr) return false;
    action->trigger();
    return true;
}

QAction* CMainWindow::Add(QMenu& menu, int number, const char* text, std::function<void()> run,
                          const QKeySequence& key) {
    QAction* const action = menu.addAction(Text(text));
    action->setData(number);
    actions[number] = action;
    connect(action, &QAction::triggered, this, std::move(run));
    if (!key.isEmpty()) GiveKeys(*action, {key});
    return action;
}

// They work whichever window of the program has the focus. Held down, a key is one command.
void CMainWindow::GiveKeys(QAction& action, const QList<QKeySequence>& keys) {
    action.setShortcuts(keys);
    action.setShortcutContext(Qt::ApplicationShortcut);
    action.setAutoRepeat(false);
}

QAction* CMainWindow::AddToggle(QMenu& menu, int number, const char* text, const char* setting) {
    QAction* const action = Add(menu, number, text, [this, number, setting] { Toggle(number, setting); });
    action->setCheckable(true);
    return action;
}

// The mark follows what is kept, not what the menu made of the click.
void CMainWindow::Toggle(int number, const char* setting) {
    const QString name = QLatin1String(setting);
    const bool on = settings.ReadSettingInt(kSettingsSection, name, 0) != 1;
    settings.SetOn(name, on);
    Action(number)->setChecked(on);
    Q_EMIT SettingsChanged();
}

// At most one of the two languages is on, and both may be off.
void CMainWindow::ChooseLanguage(int number) {
    const bool english = number == command::kInfoEnglish;
    const QString chosen = QLatin1String(english ? "DisplayInfoMessagesEnglish" : "DisplayInfoMessagesFrench");
    const QString other = QLatin1String(english ? "DisplayInfoMessagesFrench" : "DisplayInfoMessagesEnglish");
    settings.SetOn(other, false);
    const bool on = settings.ReadSettingInt(kSettingsSection, chosen, 1) != 1;
    settings.SetOn(chosen, on);
    if (on && !english) settings.WriteSettingInt(kSettingsSection, QStringLiteral("French"), 1);
    // From the event loop: the menu that was clicked is made anew.
    QMetaObject::invokeMethod(this, &CMainWindow::ApplyLanguage, Qt::QueuedConnection);
}

void CMainWindow::ApplyLanguage() {
    SetLanguage(ChosenLanguage(settings));
    BuildMenus();
    ApplySettings();
    ShowTitle();
    Q_EMIT SettingsChanged();
}

void CMainWindow::ApplySettings() {
    for (const ToggleEntry& toggle : kToggles) {
        Action(toggle.number)->setChecked(settings.IsOn(QLatin1String(toggle.setting)));
    }
    Action(command::kInfoEnglish)->setChecked(settings.IsOn(QStringLiteral("DisplayInfoMessagesEnglish")));
    Action(command::kInfoFrench)->setChecked(settings.IsOn(QStringLiteral("DisplayInfoMessagesFrench")));
    // Features that are switched off for good.
    settings.SetOn(QStringLiteral("MasterControlDownPosition"), false);
    settings.SetOn(QStringLiteral("KeyboardAZERTYUIOP"), false);
}

void CMainWindow::BuildMenus() {
    qDeleteAll(menuBar()->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly));
    menuBar()->clear();
    actions.clear();
    recentActions.clear();
    BuildFileMenu();
    BuildEditMenu();
    BuildTransportMenu();
    BuildWindowsMenu();
    BuildSettingsMenu();
    BuildHelpMenu();
    AssignMnemonics(menuBar()->actions());
    // Those within them too: some are filled as they are about to be shown.
    for (QMenu* const menu : menuBar()->findChildren<QMenu*>()) KeepMnemonics(*menu);
    ShowTitle();
}

void CMainWindow::BuildFileMenu() {
    fileMenu = menuBar()->addMenu(Text("File"));
    Add(
        *fileMenu, command::kNew, TextKey("New"), [this] { New(); }, Qt::CTRL | Qt::Key_N);
    Add(
        *fileMenu, command::kOpen, TextKey("Open ..."), [this] { ChooseAndOpen(); }, Qt::CTRL | Qt::Key_O);
    if (const QStringList examples = ExampleFiles(); !examples.isEmpty()) {
        QMenu* const menu = fileMenu->addMenu(Text("Examples"));
        for (const QString& path : examples) AddFile(*menu, path);
    }
    fileMenu->addSeparator();
    Add(
        *fileMenu, command::kSave, TextKey("Save"), [this] { Save(); }, Qt::CTRL | Qt::Key_S);
    Add(*fileMenu, command::kSaveAs, TextKey("Save As ..."), [this] { SaveAs(); });
    Add(
        *fileMenu, command::kExport, TextKey("Export ..."), [this] { ShowExport(); }, Qt::CTRL | Qt::Key_E);
    BuildExchangeMenus();
    restoreMenu = fileMenu->addMenu(Text("Restore backup"));
    connect(restoreMenu, &QMenu::aboutToShow, this, &CMainWindow::RebuildRestoreMenu);
    fileMenu->addSeparator();
    Add(
        *fileMenu, command::kExit, TextKey("E&xit"), [this] { close(); }, Qt::CTRL | Qt::Key_Q);
    RebuildRecentFiles();
}

void CMainWindow::BuildExchangeMenus() {
    Add(
        *fileMenu, command::kImportMidi, TextKey("Import MIDI ..."), [this] { exchange.ChooseMidi(); },
        Qt::CTRL | Qt::SHIFT | Qt::Key_O);
    QMenu* const menu = fileMenu->addMenu(Text("Export MIDI"));
    int number = command::kExportMidi0;
    using EWhat = CExchangeCommands::EWhat;
    const auto add = [&](const char* text, EWhat what) {
        return Add(*menu, number++, text, [this, what] { exchange.ExportMidi(what); });
    };
    GiveKeys(*add(TextKey("Song ..."), EWhat::kSong), {Qt::CTRL | Qt::SHIFT | Qt::Key_E});
    add(TextKey("Selected instrument ..."), EWhat::kInstrument);
    add(TextKey("Selected pattern ..."), EWhat::kPattern);
    Add(*fileMenu, command::kCollect, TextKey("Collect into a folder ..."), [this] { exchange.Collect(); });
    AddToggle(*menu, command::kMidiWithoutSwing, TextKey("Without swing"), "MidiWithoutSwing")
        ->setChecked(settings.IsOn(QStringLiteral("MidiWithoutSwing")));
}

void CMainWindow::BuildEditMenu() {
    QMenu* const menu = menuBar()->addMenu(Text("Edit"));
    QUndoStack& undo = workstation.Changes().Steps();
    QAction* const undoAction = undo.createUndoAction(menu, Text("Undo"));
    QAction* const redoAction = undo.createRedoAction(menu, Text("Redo"));
    GiveKeys(*undoAction, {Qt::CTRL | Qt::Key_Z});
    GiveKeys(*redoAction, {Qt::CTRL | Qt::Key_Y, Qt::CTRL | Qt::SHIFT | Qt::Key_Z});
    // Not past the document: what a window still holds back becomes a step first.
    CChanges& changes = workstation.Changes();
    for (QAction* const action : {undoAction, redoAction}) disconnect(action, &QAction::triggered, &undo, nullptr);
    connect(undoAction, &QAction::triggered, &changes, &CChanges::Undo);
    connect(redoAction, &QAction::triggered, &changes, &CChanges::Redo);
    for (QAction* const action : {undoAction, redoAction}) {
        action->setAutoRepeat(true);
        menu->addAction(action);
    }
    actions[command::kUndo] = undoAction;
    actions[command::kRedo] = redoAction;
    menu->addSeparator();
    const struct {
        int number;
        const char* text;
        QKeySequence key;
        EEdit edit;
    } rows[] = {{command::kCut, TextKey("Cut"), Qt::CTRL | Qt::Key_X, EEdit::kCut},
                {command::kCopy, TextKey("Copy"), Qt::CTRL | Qt::Key_C, EEdit::kCopy},
                {command::kPaste, TextKey("Paste"), Qt::CTRL | Qt::Key_V, EEdit::kPaste},
                {command::kDelete, TextKey("Delete"), Qt::Key_Delete, EEdit::kDelete},
                {command::kSelectAll, TextKey("Select All"), Qt::CTRL | Qt::Key_A, EEdit::kSelectAll}};
    for (const auto& row : rows) {
        edits.Connect(row.edit, Add(
                                    *menu, row.number, row.text, [] {}, row.key));
    }
    menu->addSeparator();
    const auto addWish = [this, menu](int number, const char* text, const QKeySequence& key, auto wish) {
        Add(
            *menu, number, text, [this, wish] { (this->*wish)(); }, key);
    };
    addWish(command::kAddInstrument, TextKey("Add an instrument ..."), Qt::CTRL | Qt::Key_I,
            &CMainWindow::InstrumentWanted);
    addWish(command::kAddEffect, TextKey("Add an effect ..."), Qt::CTRL | Qt::SHIFT | Qt::Key_I,
            &CMainWindow::EffectWanted);
    QAction* const freeze = Add(*menu, command::kFreeze, TextKey("Freeze / unfreeze the instrument"),
                                [this] { workstation.Freezing().Toggle(workstation.Selection().CurrentIndex()); });
    connect(menu, &QMenu::aboutToShow, freeze,
            [this, freeze] { freeze->setEnabled(workstation.Selection().CurrentIndex() >= 0); });
    connect(menu, &QMenu::aboutToShow, &edits, &CEditCommands::Update);
    edits.Update();
}

void CMainWindow::BuildTransportMenu() {
    QMenu* const menu = menuBar()->addMenu(Text("Transport"));
    CTransportControl& transport = workstation.Transport();
    CNoteRecording& recording = workstation.NoteRecording();
    CMetronomeControl& metronome = workstation.Metronome();
    Add(
        *menu, command::kPlay, TextKey("Play / Stop"), [this] { PlayOrStop(workstation); }, Qt::Key_Space);
    Add(
        *menu, command::kPanic, TextKey("Panic: end all notes"), [&transport] { transport.Panic(); },
        Qt::CTRL | Qt::Key_Period);
    menu->addSeparator();
    Add(
        *menu, command::kRecordNotes, TextKey("Record notes"),
        [&recording] {
            recording.Armed().Set(recording.Armed().IsOn() ? 0.0F : 1.0F);
            recording.ArmSwitched();
        },
        Qt::CTRL | Qt::Key_R);
    Add(*menu, command::kMetronome, TextKey("Metronome"), [&metronome] { metronome.SetOn(!metronome.On().IsOn()); });
    Add(
        *menu, command::kLoop, TextKey("Loop on / off"), [this] { workstation.Song().ToggleLoop(); },
        Qt::CTRL | Qt::SHIFT | Qt::Key_L);
    BuildLaunchMenu(*menu->addMenu(Text("Launch patterns")));
    QMenu* const countIn = menu->addMenu(Text("Count-in"));
    for (int bars = 0; bars <= CMetronomeControl::kMostBars; ++bars) {
        QAction* const action =
            countIn->addAction(CountInText(bars), [&metronome, bars] { metronome.SetCountIn(bars); });
        action->setCheckable(true);
        actions[command::kCountIn0 + bars] = action;
    }
    for (const int number : {command::kRecordNotes, command::kMetronome}) Action(number)->setCheckable(true);
    connect(menu, &QMenu::aboutToShow, this, [this, &recording, &metronome] {
        Action(command::kRecordNotes)->setChecked(recording.Armed().IsOn());
        Action(command::kMetronome)->setChecked(metronome.On().IsOn());
        for (int bars = 0; bars <= CMetronomeControl::kMostBars; ++bars) {
            Action(command::kCountIn0 + bars)->setChecked(metronome.CountIn() == bars);
        }
    });
}

void CMainWindow::BuildLaunchMenu(QMenu& menu) {
    CTransportControl& transport = workstation.Transport();
    int number = command::kLaunch0;
    for (const ELaunch launch : kLaunches) {
        QAction* const action =
            menu.addAction(LaunchText(launch), [&transport, launch] { transport.SetLaunch(launch); });
        actions[number++] = action;
        action->setCheckable(true);
        connect(&menu, &QMenu::aboutToShow, action,
                [action, &transport, launch] { action->setChecked(transport.Launch() == launch); });
    }
}

void CMainWindow::BuildWindowsMenu() {
    QMenu* const menu = menuBar()->addMenu(Text("Windows"));
    for (const ToolRow& row : ToolTable()) {
        if (!CToolWindows::Has(row.tool)) continue;
        Add(
            *menu, command::kTool0 + static_cast<int>(row.tool), row.title, [this, tool = row.tool] { OpenTool(tool); },
            row.key == Qt::Key_unknown ? QKeySequence() : QKeySequence(row.key));
    }
    menu->addSeparator();
    Add(
        *menu, command::kTool0 + static_cast<int>(ETool::kPlaylist), TextKey("Song"),
        [this] { OpenTool(ETool::kPlaylist); }, Qt::Key_F6);
    Add(
        *menu, command::kSongWindow, TextKey("Song in the whole window"), [this] { Q_EMIT SongWanted(true); },
        Qt::SHIFT | Qt::Key_F6);
    menu->addSeparator();
    QAction* const full = Add(
        *menu, command::kFullScreen, TextKey("Full screen"),
        [this] { setWindowState(windowState() ^ Qt::WindowFullScreen); }, Qt::Key_F11);
    full->setCheckable(true);
    connect(menu, &QMenu::aboutToShow, this, [this, full] { full->setChecked(isFullScreen()); });
}

void CMainWindow::BuildSettingsMenu() {
    QMenu* const menu = menuBar()->addMenu(Text("Settings"));
    Add(*menu, command::kAudioAndMidi, TextKey("Audio && Midi ..."), [this] {
        if (RunAudioDialog(this, workstation)) Q_EMIT TimebaseChanged();
    });
    Add(*menu, command::kTimeSignature, TextKey("Time Signature ..."), [this] {
        if (RunTimeSignatureDialog(this, workstation)) Q_EMIT TimebaseChanged();
    });
    CControllers& controllers = workstation.Controllers();
    QAction* const learn = Add(
        *menu, command::kLearnMidi, TextKey("MIDI learn"),
        [&controllers] { controllers.SetPicking(!controllers.IsPicking()); }, Qt::CTRL | Qt::Key_M);
    learn->setCheckable(true);
    learn->setChecked(controllers.IsPicking());
    connect(&controllers, &CControllers::Changed, learn,
            [learn, &controllers] { learn->setChecked(controllers.IsPicking()); });
    Add(*menu, command::kControllers, TextKey("MIDI controllers ..."), [this] { ShowControllers(); });
    menu->addSeparator();
    Add(*menu, command::kBackupTime, TextKey("Backup Time ..."),
        [this] { RunBackupDialog(this, settings, countdown); });
    for (const int number : {command::kInfoEnglish, command::kInfoFrench}) {
        const char* const text = number == command::kInfoEnglish
                                     ? TextKey("Display Help/Info Messages in English")
                                     : TextKey("Affichage des Help/Info Messages en Français");
        Add(*menu, number, text, [this, number] { ChooseLanguage(number); })->setCheckable(true);
    }
    for (const ToggleEntry& toggle : kToggles) AddToggle(*menu, toggle.number, toggle.text, toggle.setting);
    menu->addSeparator();
    BuildScaleMenu(*menu->addMenu(Text("Size of the windows")));
    BuildPaletteMenu(*menu->addMenu(Text("Colours")));
    Add(*menu, command::kScanPlugins, TextKey("Scan plug-ins"), [this] { ScanPlugins(); });
    Add(*menu, command::kPluginFolders, TextKey("Plug-in folders ..."), [this] { ChoosePluginFolders(); });
}

void CMainWindow::BuildHelpMenu() {
    QMenu* const menu = menuBar()->addMenu(Text("Help"));
    Add(
        *menu, command::kShortcuts, TextKey("Keyboard shortcuts ..."), [this] { ShowShortcuts(); }, Qt::Key_F1);
    Add(
        *menu, command::kQuickStart, TextKey("Quick start - Prise en main ..."), [this] { Q_EMIT QuickStartWanted(); },
        Qt::Key_F12);
    Add(*menu, command::kManualEnglish, TextKey("User manual in English ..."),
        [this] { OpenManual("%1UserGuideEnglish.pdf"); });
    Add(*menu, command::kManualFrench, TextKey("Manuel d'utilisation en Français ..."),
        [this] { OpenManual("%1UserGuideFrench.pdf"); });
    QAction* const about =
        Add(*menu, command::kAbout, TextKey("About QUIB Sequencer ..."), [this] { ShowAboutBox(this); });
    GiveKeys(*about, {Qt::ALT | Qt::Key_Slash, Qt::ALT | Qt::Key_Question, Qt::ALT | Qt::SHIFT | Qt::Key_Question});
    Add(*menu, command::kVersion, TextKey("Version 1.5"), [] {})->setEnabled(false);
}

void CMainWindow::OpenManual(const char* format) {
    const QString path = DocumentFile(workstation.ProgramFolders(), QString::fromLatin1(format).arg(QString()));
    if (QFile::exists(path) && QDesktopServices::openUrl(QUrl::fromLocalFile(path))) return;
    ShowMessage(QStringLiteral("QUIB Sequencer"), Text("The manual cannot be opened: %1").arg(path));
}

void CMainWindow::RebuildRecentFiles() {
    for (QAction* const action : recentActions) {
        fileMenu->removeAction(action);
        delete action;
    }
    recentActions.clear();
    for (int index = 0; index < CRecentFiles::kMost; ++index) actions.erase(command::kRecentFile0 + index);
    const QStringList paths = recentFiles.Rebuild();
    if (paths.isEmpty()) return;
    recentActions.append(fileMenu->addSeparator());
    for (qsizetype index = 0; index < paths.size(); ++index) {
        QAction* const action = AddFile(*fileMenu, paths[index]);
        action->setText(action->text() + u'\t' + ShortFolder(paths[index]).replace(u'&', QStringLiteral("&&")));
        action->setData(command::kRecentFile0);
        actions[command::kRecentFile0 + static_cast<int>(index)] = action;
        recentActions.append(action);
    }
}

// An entry that opens the file once the menu is gone.
QAction* CMainWindow::AddFile(QMenu& menu, const QString& path) {
    QString name = QFileInfo(path).completeBaseName();
    QAction* const action = menu.addAction(name.replace(u'&', QStringLiteral("&&")));
    action->setToolTip(path);
    connect(action, &QAction::triggered, this, [this, path] {
        QMetaObject::invokeMethod(
            this, [this, path] { Open(path); }, Qt::QueuedConnection);
    });
    return action;
}

}  // namespace quib
