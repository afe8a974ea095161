// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CMainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMessageBox>
#include <QMimeData>
#include <algorithm>

#include "app/CPluginCatalog.h"
#include "app/CPluginWindows.h"
#include "app/Commands.h"
#include "document/CSettings.h"
#include "model/plugin/PluginFormats.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kShowNormal = 1;
constexpr int kShowMinimised = 2;
constexpr int kShowMaximised = 3;

QString Extension(const QString& path) { return QFileInfo(path).suffix().toLower(); }

bool IsWelcome(const QString& path) {
    static const QStringList extensions = {QStringLiteral("prg"), QStringLiteral("ist"), QStringLiteral("ptn"),
                                           QStringLiteral("fxb"), QStringLiteral("fxp")};
    return extensions.contains(Extension(path)) || HasPluginExtension(path.toStdString());
}

}  // namespace

CMainWindow::CMainWindow(CWorkstation& projectOwner, CPluginCatalog& pluginCatalog, const ConsoleFactory& makeConsole)
    : workstation(projectOwner),
      catalog(pluginCatalog),
      settings(projectOwner.Settings()),
      recentFiles(settings),
      pluginWindows(std::make_unique<CPluginWindows>(projectOwner, this)) {
    setAcceptDrops(true);
    countdown.Start(BackupMinutes(settings));
    BuildMenus();
    connect(&workstation, &CWorkstation::ProjectPathChanged, this, &CMainWindow::ShowTitle);
    connect(&workstation, &CWorkstation::ModifiedChanged, this, &CMainWindow::ShowTitle);
    connect(&workstation, &CWorkstation::Message, this, &CMainWindow::ShowMessage, Qt::QueuedConnection);
    const auto tellIdentities = [this] { workstation.SetPluginIdentities(catalog.Identities()); };
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
    setWindowTitle(workstation.ProjectName() + QStringLiteral("[*] - QUIB Sequencer"));
    setWindowModified(workstation.IsModified());
    if (QAction* const save = Action(command::kSave)) save->setEnabled(!workstation.ProjectPath().isEmpty());
}

// The backup comes before all else. A project that is being loaded is not a whole one yet.
void CMainWindow::OnTick() {
    if (loading) return;
    if (countdown.Tick()) {
        workstation.WriteBackup(true);
        countdown.Start(BackupMinutes(settings));
    }
    workstation.Tick();
    pluginWindows->Tick();
    Q_EMIT Ticked();
}

void CMainWindow::ShowMessage(const QString& caption, const QString& text) {
    auto* const box = new QMessageBox(QMessageBox::Warning, caption, text, QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void CMainWindow::ShowWarnings() {
    const auto& warnings = workstation.Warnings();
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
    if (!workstation.IsModified()) return true;
    const auto answer =
        QMessageBox::question(this, QStringLiteral("QUIB Sequencer"),
                              Text("\"%1\" has changes that are not saved. Save them?").arg(workstation.ProjectName()),
                              QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Cancel) return false;
    return answer == QMessageBox::Discard || SaveNow();
}

// Nothing is thrown away here: the project as it is comes back with the next start.
void CMainWindow::closeEvent(QCloseEvent* event) {
    timer.stop();
    pluginWindows->CloseAll();
    settings.WriteWindowPlacement(QStringLiteral("Main"), normalGeometry());
    const int show = isMinimized() ? kShowMinimised : isMaximized() ? kShowMaximised : kShowNormal;
    settings.WriteSettingInt(kWindowsSection, QStringLiteral("MainShow"), show);
    event->accept();
    QCoreApplication::quit();
}

void CMainWindow::dragEnterEvent(QDragEnterEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    const bool welcome = std::any_of(urls.begin(), urls.end(),
                                     [](const QUrl& url) { return url.isLocalFile() && IsWelcome(url.toLocalFile()); });
    if (welcome) event->acceptProposedAction();
}

void CMainWindow::dropEvent(QDropEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    event->acceptProposedAction();
    for (const QUrl& url : urls) {
        if (url.isLocalFile()) TakeFile(url.toLocalFile());
    }
}

void CMainWindow::TakeFile(const QString& path) {
    const QString kind = Extension(path);
    QString error;
    const int current = workstation.CurrentIndex();
    const auto instrument = workstation.Instrument(current);
    const SlotPlace place{SlotPlace::EKind::kInstrument, instrument ? instrument->Id() : 0, 0};
    if (kind == QLatin1String("prg")) return Open(path);
    if (HasPluginExtension(path.toStdString())) return TakePluginLibrary(path);
    if (kind == QLatin1String("ist")) {
        if (workstation.AddInstrument(path, error) >= 0) return ShowWarnings();
    } else if (!instrument) {
        error = Text("There is no instrument to load this file into.");
    } else if (kind == QLatin1String("ptn")) {
        workstation.LoadPattern(current, path, error);
    } else if (kind == QLatin1String("fxb")) {
        workstation.LoadBank(place, path, error);
    } else if (kind == QLatin1String("fxp")) {
        workstation.LoadProgram(place, path, error);
    }
    if (!error.isEmpty()) ShowMessage(QStringLiteral("QUIB"), error);
}

// A synthesiser becomes an instrument, an effect goes into the first free insert of the instrument shown.
void CMainWindow::TakePluginLibrary(const QString& path) {
    PluginEntry entry;
    QString error;
    if (!catalog.Ask(path, entry, error)) return ShowMessage(QStringLiteral("QUIB"), error);
    if (entry.isInstrument) {
        workstation.AddInstrument(path, error);
    } else if (const auto instrument = workstation.Instrument(workstation.CurrentIndex())) {
        SlotPlace place{SlotPlace::EKind::kInsert, instrument->Id(), 0};
        const auto first = workstation.Slot(place);
        if (first->plugin || first->missing) place.index = 1;
        if (workstation.LoadPlugin(place, path, error)) {
            instrument->strip.insertOn[static_cast<std::size_t>(place.index)].Set(1.0F);
        }
    } else {
        error = Text("There is no instrument to put this effect into.");
    }
    if (!error.isEmpty()) ShowMessage(QStringLiteral("QUIB"), error);
}

int CMainWindow::Scale() const {
    return std::clamp(settings.ReadSettingInt(kSettingsSection, QStringLiteral("GuiScale"), 100), 75, 300);
}

}  // namespace quib
