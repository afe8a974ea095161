// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CMainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <algorithm>

#include "app/CPluginCatalog.h"
#include "app/CPluginWindows.h"
#include "app/CShortcutsPage.h"
#include "app/Commands.h"
#include "app/Dialogs.h"
#include "app/learn/CControllerDialog.h"
#include "app/learn/CLearnMode.h"
#include "document/CSettings.h"
#include "editors/automation/CWinControlParamEvent.h"
#include "editors/base/CToolWindow.h"
#include "export/SoundClip.h"
#include "model/plugin/PluginFormats.h"
#include "platform/EndSignals.h"
#include "texts/Texts.h"

namespace quib {

namespace {

QString Extension(const QString& path) { return QFileInfo(path).suffix().toLower(); }

}  // namespace

CMainWindow::CMainWindow(CWorkstation& projectOwner, CPluginCatalog& pluginCatalog, const ConsoleFactory& makeConsole)
    : workstation(projectOwner),
      catalog(pluginCatalog),
      settings(projectOwner.Settings()),
      recentFiles(settings),
      pluginWindows(std::make_unique<CPluginWindows>(projectOwner, this)),
      controlSettings(settings),
      tools(ToolContext{projectOwner, controlSettings, [this](ETool tool) { return tools.Open(tool); }}, this),
      computerKeyboard(projectOwner, this),
      edits(this),
      exchange(*this),
      drops([this](const QString& path, const QPoint& point) { TakeFile(path, point); },
            [this](const QStringList& paths, const QPoint& point) {
                const bool plugins = !paths.isEmpty() && HasPluginExtension(paths.front().toStdString());
                Q_EMIT FilesHover(plugins ? paths : QStringList(), point);
            },
            this) {
    drops.Serve(this);
    countdown.Start(BackupMinutes(settings));
    BuildMenus();
    connect(&workstation.Session(), &CSession::ProjectPathChanged, this, &CMainWindow::ShowTitle);
    connect(&workstation.Changes(), &CChanges::ModifiedChanged, this, &CMainWindow::ShowTitle);
    connect(&workstation, &CWorkstation::Message, this, &CMainWindow::ShowMessage, Qt::QueuedConnection);
    connect(&workstation, &CWorkstation::Notice, this, &CMainWindow::ShowNotice);
    const auto tellIdentities = [this] { workstation.Places().SetPluginIdentities(catalog.Identities()); };
    connect(&catalog, &CPluginCatalog::Finished, this, tellIdentities);
    tellIdentities();
    // How far reading new plug-ins is, in a line that goes with it.
    connect(&catalog, &CPluginCatalog::Progressed, this, [this](int done, int total) {
        statusBar()->showMessage(Text("Reading new plug-ins: %1 of %2").arg(done).arg(total));
        statusBar()->setVisible(true);
    });
    connect(&catalog, &CPluginCatalog::Finished, this, [this] {
        auto* const line = findChild<QStatusBar*>();
        if (line == nullptr) return;
        line->clearMessage();
        line->setVisible(notice != nullptr);
    });
    // What only refuses to load may say so itself.
    workstation.Places().admit = [this](const QString& library, QString& error) {
        PluginEntry entry;
        QString told;
        if (catalog.Ask(library, entry, told) || entry.failure == EPluginFailure::kRefused) return true;
        error = FailureText(entry);
        return false;
    };
    timer.setInterval(kTickMilliseconds);
    timer.setTimerType(Qt::PreciseTimer);
    connect(&timer, &QTimer::timeout, this, &CMainWindow::OnTick);
    setCentralWidget(makeConsole(*this));
    learnMode = std::make_unique<CLearnMode>(workstation, this);
    pluginWindows->showLane = [this](const CPlugin* plugin, int parameter) { ShowLane(plugin, parameter); };
    connect(learnMode.get(), &CLearnMode::ListWanted, this, &CMainWindow::ShowControllers);
    connect(this, &CMainWindow::SettingsChanged, learnMode.get(), &CLearnMode::Translate);
    ShowTitle();
}

CMainWindow::~CMainWindow() = default;

void CMainWindow::ShowTitle() {
    const QString guest = workstation.Session().IsGuest() ? Text(" (second window, no backups)") : QString();
    setWindowTitle(workstation.Session().ProjectName() + QStringLiteral("[*] - QUIB Sequencer") + guest);
    setWindowModified(workstation.Session().IsModified());
    QAction* const save = Action(command::kSave);
    QAction* const saveAs = Action(command::kSaveAs);
    if (save == nullptr || saveAs == nullptr) return;
    // While there is no file, the key of Save asks for one.
    const bool hasFile = !workstation.Session().ProjectPath().isEmpty();
    QList<QKeySequence> keys{Qt::CTRL | Qt::SHIFT | Qt::Key_S};
    if (!hasFile) keys.append(save->shortcut());
    save->setEnabled(hasFile);
    GiveKeys(*saveAs, keys);
}

void CMainWindow::ShowShortcuts() {
    if (shortcuts == nullptr) shortcuts = new CShortcutsPage(this);
    shortcuts->Show(ShortcutsOf(*menuBar()));
}

// The backup comes before all else. A project that is being loaded is not a whole one yet.
void CMainWindow::OnTick() {
    if (loading) return;
    if (countdown.Tick()) {
        workstation.Session().WriteBackup(true);
        countdown.Start(BackupMinutes(settings));
    }
    workstation.Tick();
    pluginWindows->Tick();
    tools.FollowEngine();
    edits.Update();
    learnMode->Tick();
    if (controllerList != nullptr) controllerList->Tick();
    Q_EMIT Ticked();
}

void CMainWindow::ShowControllers() {
    if (controllerList == nullptr) controllerList = new CControllerDialog(workstation, this);
    controllerList->show();
    controllerList->raise();
    controllerList->activateWindow();
}

void CMainWindow::ShowMessage(const QString& caption, const QString& text) { TellError(this, text, caption); }

// A line at the bottom that stays until it is clicked away, and stops nobody who plays.
void CMainWindow::ShowNotice(const QString& text) {
    if (notice == nullptr) {
        notice = new QPushButton;
        notice->setObjectName(QStringLiteral("notice"));
        notice->setFlat(true);
        notice->setFocusPolicy(Qt::NoFocus);
        connect(notice, &QPushButton::clicked, statusBar(), &QWidget::hide);
        statusBar()->setSizeGripEnabled(false);
        statusBar()->addPermanentWidget(notice, 1);  // beside how far the scan is
    }
    delete noticeButton;
    notice->setText(QStringLiteral("\u00D7   ") + QString(text).replace(u'&', QStringLiteral("&&")));  // no mnemonic
    statusBar()->show();
}

void CMainWindow::OfferNotice(const QString& text, const QString& button, std::function<void()> run) {
    ShowNotice(text);
    noticeButton = new QPushButton(button);
    noticeButton->setObjectName(QStringLiteral("noticeButton"));
    noticeButton->setFocusPolicy(Qt::NoFocus);
    connect(noticeButton, &QPushButton::clicked, this, [this, run = std::move(run)] {
        statusBar()->hide();
        noticeButton->deleteLater();
        run();
    });
    statusBar()->addPermanentWidget(noticeButton);
}

void CMainWindow::ShowWarnings() { ShowWarnings(workstation.Session().Warnings()); }

void CMainWindow::ShowWarnings(const std::vector<std::string>& warnings) {
    if (warnings.empty()) return;
    constexpr std::size_t kMostLines = 20;
    QStringList lines;
    for (const std::string& warning : warnings) {
        if (lines.size() < static_cast<qsizetype>(kMostLines)) lines.append(QString::fromStdString(warning));
    }
    if (warnings.size() > kMostLines) lines.append(Text("and %1 more").arg(warnings.size() - kMostLines));
    ShowMessage(QStringLiteral("QUIB Sequencer"), lines.join(QLatin1Char('\n')));
}

bool CMainWindow::MayDiscard() {
    if (!workstation.Session().IsModified()) return true;
    const auto answer = QMessageBox::question(
        this, QStringLiteral("QUIB Sequencer"),
        Text("\"%1\" has changes that are not saved. Save them?").arg(workstation.Session().ProjectName()),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Cancel) return false;
    return answer == QMessageBox::Discard || SaveNow();
}

// Nothing is thrown away here: the project as it is comes back with the next start, but for that of a guest.
void CMainWindow::closeEvent(QCloseEvent* event) {
    if (workstation.Session().IsGuest() && !EndWanted() && !MayDiscard()) return event->ignore();
    timer.stop();
    pluginWindows->CloseAll();
    tools.KeepPlacements();
    settings.WriteWindowPlacement(QStringLiteral("Main"), normalGeometry());
    const int show = isMinimized() ? kShowMinimised : isMaximized() ? kShowMaximised : kShowNormal;
    settings.WriteSettingInt(kWindowsSection, QStringLiteral("MainShow"), show);
    event->accept();
    QCoreApplication::quit();
}

void CMainWindow::OpenTool(ETool tool) {
    if (tool == ETool::kTutorial && !CToolWindows::Has(tool)) return Q_EMIT QuickStartWanted();
    if (tool == ETool::kPlaylist) return Q_EMIT SongWanted(false);
    const CToolWindow* const known = tools.Find(tool);
    const bool isNew = known == nullptr || !known->isVisible();
    CToolWindow* const window = tools.Open(tool);
    if (window == nullptr) return;
    drops.Serve(window);
    const auto current = workstation.Selection().CurrentInstrument();
    if (!isNew || window->WasPlacedByUser() || !surroundings.place) return;
    const SlotPlace place{SlotPlace::EKind::kInstrument, current ? current->Id() : 0, 0};
    PutBeside(*window, surroundings.place(place));
}

void CMainWindow::ReopenTools() {
    bool any = false;
    for (const ToolRow& row : ToolTable()) {
        if (!tools.WasOpen(row)) continue;
        OpenTool(row.tool);
        any = true;
    }
    if (any) activateWindow();
}

void CMainWindow::OpenPlugin(const SlotPlace& place) {
    const bool wasOpen = pluginWindows->IsShown(place);
    CPluginWindow* const window = pluginWindows->Show(place);
    if (window == nullptr) return;
    drops.Serve(window);
    if (!wasOpen && surroundings.place) PutBeside(*window, surroundings.place(place));
}

// Those of inserts and of the master section play in the song only.
void CMainWindow::ShowLane(const CPlugin* plugin, int parameter) {
    const auto lane = workstation.Lanes().Find(plugin, parameter);
    if (!lane) return;
    if (lane->instrument) workstation.Selection().SetCurrent(workstation.Stack().IndexOf(lane->instrument->Id()));
    OpenTool(ETool::kAutomation);
    auto* const window = dynamic_cast<CWinControlParamEvent*>(tools.Find(ETool::kAutomation));
    if (window == nullptr) return;
    if (lane->key.group != ELaneGroup::kPlugin) window->SetSong(true);
    window->ChooseLane(lane->key);
}

void CMainWindow::TakeFile(const QString& path, std::optional<QPoint> point) {
    const QString kind = Extension(path);
    QString error;
    const int current = workstation.Selection().CurrentIndex();
    const auto instrument = workstation.Stack().Instrument(current);
    const SlotPlace place{SlotPlace::EKind::kInstrument, instrument ? instrument->Id() : 0, 0};
    if (kind == QLatin1String("prg")) return Open(path);
    for (const ToolRow& row : ToolTable()) {
        CToolWindow* const tool = tools.Find(row.tool);
        const bool isThere = point && tool != nullptr && tool->isVisible() && tool->frameGeometry().contains(*point);
        if (isThere && tool->TakeFile(path)) return;
    }
    if (IsSoundFile(path.toStdString())) return exchange.OfferSound(path, point.value_or(QCursor::pos()));
    if (CExchangeCommands::IsMidi(path)) {
        const CToolWindow* const roll = tools.Find(ETool::kPianoRoll);
        const bool isOnRoll =
            point && roll != nullptr && roll->isActiveWindow() && roll->frameGeometry().contains(*point);
        return isOnRoll ? exchange.ImportMidiInto(path, *point) : exchange.ImportMidi(path);
    }
    if (HasPluginExtension(path.toStdString())) return TakePluginLibrary(path, point);
    if (kind == QLatin1String("ist")) return LoadFileInto(path, std::nullopt);
    if (!instrument) {
        error = Text("There is no instrument to load this file into.");
    } else if (kind == QLatin1String("ptn")) {
        workstation.Contents().LoadPattern(current, path, error);
    } else if (kind == QLatin1String("fxb")) {
        workstation.Places().LoadBank(place, path, error);
    } else if (kind == QLatin1String("fxp")) {
        workstation.Places().LoadProgram(place, path, error);
    }
    if (!error.isEmpty()) ShowMessage(QStringLiteral("QUIB"), error);
}

// It goes to what lies under the mouse; else a synthesiser becomes an instrument, an effect goes into the first
// free insert of the instrument shown.
void CMainWindow::TakePluginLibrary(const QString& path, const std::optional<QPoint>& point) {
    PluginEntry entry;
    QString error;
    if (!catalog.Ask(path, entry, error)) return ShowMessage(QStringLiteral("QUIB"), error);
    const ESlotKind kind = entry.isInstrument ? ESlotKind::kInstrument : ESlotKind::kEffect;
    const auto target = point && dropPlaceAt ? dropPlaceAt(kind, *point) : std::nullopt;
    if (target || entry.isInstrument) return LoadFileInto(path, target ? target->place : std::nullopt);
    const auto instrument = workstation.Selection().CurrentInstrument();
    if (!instrument) {
        return ShowMessage(QStringLiteral("QUIB"), Text("There is no instrument to put this effect into."));
    }
    const SlotPlace last{SlotPlace::EKind::kInsert, instrument->Id(), kInsertCount - 1};
    LoadFileInto(path, FreeEffectPlace(workstation.Places(), instrument->Id()).value_or(last));
}

// Nothing unknown is loaded before a process of its own has tried it.
void CMainWindow::LoadFileInto(const QString& path, const std::optional<SlotPlace>& place) {
    PluginEntry entry;
    QString error;
    const bool isPlugin = HasPluginExtension(path.toStdString());
    if (isPlugin && !catalog.Ask(path, entry, error)) return ShowMessage(QStringLiteral("QUIB"), error);
    if (place) {
        workstation.Places().LoadPlugin(*place, path, error);
    } else if (workstation.Stack().AddInstrument(path, error) >= 0 && !isPlugin) {
        return ShowWarnings(workstation.Stack().TakeWarnings());
    }
    if (!error.isEmpty()) ShowMessage(QStringLiteral("QUIB"), error);
}

}  // namespace quib
