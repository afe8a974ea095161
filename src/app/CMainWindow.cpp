// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CMainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <algorithm>

#include "app/CPluginCatalog.h"
#include "app/CPluginWindows.h"
#include "app/Commands.h"
#include "app/Dialogs.h"
#include "app/console/PatternMenu.h"
#include "document/CSettings.h"
#include "editors/base/CToolWindow.h"
#include "model/plugin/PluginFormats.h"
#include "platform/EndSignals.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kShowNormal = 1;
constexpr int kShowMinimised = 2;
constexpr int kShowMaximised = 3;

QString Extension(const QString& path) { return QFileInfo(path).suffix().toLower(); }

}  // namespace

CMainWindow::CMainWindow(CWorkstation& projectOwner, CPluginCatalog& pluginCatalog, const ConsoleFactory& makeConsole)
    : workstation(projectOwner),
      catalog(pluginCatalog),
      settings(projectOwner.Settings()),
      recentFiles(settings),
      pluginWindows(std::make_unique<CPluginWindows>(projectOwner, this)),
      controlSettings(settings),
      tools(ToolContext{projectOwner, controlSettings}, this),
      computerKeyboard(projectOwner, this),
      edits(this),
      drops([this](const QString& path) { TakeFile(path); }, this) {
    drops.Serve(this);
    edits.SetMainTarget(std::make_unique<CPatternEdits>(workstation));
    countdown.Start(BackupMinutes(settings));
    BuildMenus();
    connect(&workstation.Session(), &CSession::ProjectPathChanged, this, &CMainWindow::ShowTitle);
    connect(&workstation.Changes(), &CChanges::ModifiedChanged, this, &CMainWindow::ShowTitle);
    connect(&workstation, &CWorkstation::Message, this, &CMainWindow::ShowMessage, Qt::QueuedConnection);
    connect(&workstation, &CWorkstation::Notice, this, &CMainWindow::ShowNotice);
    const auto tellIdentities = [this] { workstation.Places().SetPluginIdentities(catalog.Identities()); };
    connect(&catalog, &CPluginCatalog::Finished, this, tellIdentities);
    tellIdentities();
    timer.setInterval(kTickMilliseconds);
    timer.setTimerType(Qt::PreciseTimer);
    connect(&timer, &QTimer::timeout, this, &CMainWindow::OnTick);
    setCentralWidget(makeConsole(*this));
    ShowTitle();
}

CMainWindow::~CMainWindow() = default;

void CMainWindow::ShowTitle() {
    const QString guest = workstation.Session().IsGuest() ? Text(" (second window, no backups)") : QString();
    setWindowTitle(workstation.Session().ProjectName() + QStringLiteral("[*] - QUIB Sequencer") + guest);
    setWindowModified(workstation.Session().IsModified());
    if (QAction* const save = Action(command::kSave)) save->setEnabled(!workstation.Session().ProjectPath().isEmpty());
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
    Q_EMIT Ticked();
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
        statusBar()->addWidget(notice, 1);
    }
    notice->setText(QStringLiteral("\u00D7   ") + text);
    statusBar()->show();
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
    if (CToolWindow* const window = tools.Open(tool)) drops.Serve(window);
}

void CMainWindow::OpenPlugin(const SlotPlace& place) {
    if (CPluginWindow* const window = pluginWindows->Show(place)) drops.Serve(window);
}

void CMainWindow::TakeFile(const QString& path) {
    const QString kind = Extension(path);
    QString error;
    const int current = workstation.Selection().CurrentIndex();
    const auto instrument = workstation.Stack().Instrument(current);
    const SlotPlace place{SlotPlace::EKind::kInstrument, instrument ? instrument->Id() : 0, 0};
    if (kind == QLatin1String("prg")) return Open(path);
    if (HasPluginExtension(path.toStdString())) return TakePluginLibrary(path);
    if (kind == QLatin1String("ist")) {
        if (workstation.Stack().AddInstrument(path, error) >= 0)
            return ShowWarnings(workstation.Stack().TakeWarnings());
    } else if (!instrument) {
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

// A synthesiser becomes an instrument, an effect goes into the first free insert of the instrument shown.
void CMainWindow::TakePluginLibrary(const QString& path) {
    PluginEntry entry;
    QString error;
    if (!catalog.Ask(path, entry, error)) return ShowMessage(QStringLiteral("QUIB"), error);
    if (entry.isInstrument) {
        workstation.Stack().AddInstrument(path, error);
    } else if (const auto instrument = workstation.Stack().Instrument(workstation.Selection().CurrentIndex())) {
        SlotPlace place{SlotPlace::EKind::kInsert, instrument->Id(), 0};
        const auto first = workstation.Places().Slot(place);
        if (first->plugin || first->missing) place.index = 1;
        workstation.Places().LoadInsert(place, path, error);
    } else {
        error = Text("There is no instrument to put this effect into.");
    }
    if (!error.isEmpty()) ShowMessage(QStringLiteral("QUIB"), error);
}

int CMainWindow::Scale() const {
    return std::clamp(settings.ReadSettingInt(kSettingsSection, QStringLiteral("GuiScale"), 100), 75, 300);
}

}  // namespace quib
