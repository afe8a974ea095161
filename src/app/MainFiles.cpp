// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's commands on projects and on plug-in folders.
#include <QAction>
#include <QFileDialog>
#include <QFileInfo>
#include <QLocale>
#include <QMenu>
#include <QProgressDialog>

#include "app/CMainWindow.h"
#include "app/CPluginCatalog.h"
#include "app/CPluginWindows.h"
#include "app/Commands.h"
#include "app/Dialogs.h"
#include "app/FileDialogs.h"
#include "app/export/CExportDialog.h"
#include "app/start/CStartPage.h"
#include "document/CSettings.h"
#include "document/LoopFolders.h"
#include "document/ShippedFiles.h"
#include "platform/EndSignals.h"
#include "texts/Texts.h"

namespace quib {

namespace {

// The time that the name of a timed backup tells, for reading.
QString BackupTitle(const QString& path) {
    const QString digits = QFileInfo(path).completeBaseName().mid(7);
    const QDateTime time = QDateTime::fromString(digits, QStringLiteral("yyyyMMdd-HHmmss"));
    return time.isValid() ? QLocale().toString(time, QLocale::LongFormat) : QFileInfo(path).fileName();
}

// Nothing is written over what comes with the program.
bool HasOwnFile(const CSession& session) {
    return !session.ProjectPath().isEmpty() && !IsExample(session.ProjectPath());
}

}  // namespace

void CMainWindow::New() {
    if (!MayDiscard()) return;
    pluginWindows->CloseAll();
    workstation.Session().NewProject();
    if (auto* const page = findChild<CStartPage*>()) page->SetWanted(true);
}

void CMainWindow::ChooseAndOpen() {
    const QString path = ChooseFileToOpen(this, settings, EFileKind::kProject);
    if (!path.isEmpty()) Open(path);
}

void CMainWindow::Open(const QString& path) {
    if (!MayDiscard() || !LoadWithProgress(path)) return;
    Remember(path);
    ShowWarnings();
    const QStringList missing = MissingLoops(workstation);
    if (!missing.isEmpty()) ShowNotice(missing.join(QStringLiteral("; ")));
}

bool CMainWindow::LoadWithProgress(const QString& path) {
    pluginWindows->CloseAll();
    QProgressDialog progress(Text("Loading %1").arg(QFileInfo(path).fileName()), Text("Cancel"), 0, 100, this);
    progress.setWindowModality(Qt::WindowModal);
    constexpr int kPatience = 500;  // milliseconds
    progress.setMinimumDuration(kPatience);
    QString error;
    loading = true;
    const bool loaded = workstation.Session().LoadProject(QFileInfo(path).absoluteFilePath(), error,
                                                          [&](float share, const std::string& what) {
                                                              progress.setLabelText(QString::fromStdString(what));
                                                              progress.setValue(static_cast<int>(share * 99.0F));
                                                              return !progress.wasCanceled() && !EndWanted();
                                                          });
    loading = false;
    if (!loaded && !progress.wasCanceled() && !EndWanted()) ShowMessage(QStringLiteral("QUIB Sequencer"), error);
    return loaded;
}

QString CMainWindow::PathToSave() {
    return ChooseFileToSave(this, settings, EFileKind::kProject,
                            workstation.Session().ProjectName() + QStringLiteral(".prg"));
}

void CMainWindow::Save() {
    SaveTo(HasOwnFile(workstation.Session()) ? workstation.Session().ProjectPath() : PathToSave());
}

void CMainWindow::SaveAs() { SaveTo(PathToSave()); }

void CMainWindow::SaveTo(const QString& path) {
    if (path.isEmpty()) return;
    workstation.Session().SaveProject(path, [this, path](const QString& error) {
        if (!error.isEmpty()) return ShowMessage(QStringLiteral("QUIB Sequencer"), error);
        Remember(path);
    });
}

// Waits for the disk: what is not saved is thrown away next.
bool CMainWindow::SaveNow() {
    const QString path = HasOwnFile(workstation.Session()) ? workstation.Session().ProjectPath() : PathToSave();
    QString error;
    if (path.isEmpty()) return false;
    if (workstation.Session().SaveProject(path, error)) {
        Remember(path);
        return true;
    }
    ShowMessage(QStringLiteral("QUIB Sequencer"), error);
    return false;
}

void CMainWindow::Remember(const QString& path) {
    recentFiles.Add(QFileInfo(path).absoluteFilePath());
    RebuildRecentFiles();
}

void CMainWindow::RebuildRestoreMenu() {
    restoreMenu->clear();
    const QStringList paths = workstation.Session().TimedBackups();
    int number = command::kRestore0;
    for (const QString& path : paths) {
        QAction* const action = restoreMenu->addAction(BackupTitle(path));
        actions[number++] = action;
        connect(action, &QAction::triggered, this, [this, path] { Restore(path); });
    }
    if (paths.isEmpty()) restoreMenu->addAction(Text("No backup yet"))->setEnabled(false);
}

// The project keeps its name: saving puts the restored work in its place.
void CMainWindow::Restore(const QString& path) {
    if (!MayDiscard()) return;
    pluginWindows->CloseAll();
    QString error;
    if (!workstation.Session().LoadSession(path, workstation.Session().ProjectPath(), true, error)) {
        return ShowMessage(QStringLiteral("QUIB Sequencer"), error);
    }
    ShowWarnings();
}

void CMainWindow::ShowExport(std::optional<EExportRange> range) {
    if (!exporting) exporting = new CExportDialog(this, workstation, Scale());
    if (range) exporting->ChooseRange(*range);
    exporting->show();
    exporting->raise();
    exporting->activateWindow();
}

void CMainWindow::ScanPlugins() {
    RunScanDialog(this, catalog);
    workstation.Places().RefreshPlugins();
}

void CMainWindow::ChoosePluginFolders() {
    if (!RunPluginFoldersDialog(this, settings)) return;
    workstation.Places().ReadPluginFolders();
    catalog.Cancel();
    catalog.SetFolders(PluginFolders(workstation.ProgramFolders(), settings));
    ScanPlugins();
}

}  // namespace quib
