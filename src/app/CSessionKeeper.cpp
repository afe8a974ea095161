// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CSessionKeeper.h"

#include <QFileInfo>
#include <QMessageBox>
#include <utility>

#include "document/CSettings.h"
#include "platform/EndSignals.h"
#include "texts/Texts.h"

namespace quib {

namespace {

const QString kProgram = QStringLiteral("QUIB Sequencer");

QString CrashQuestion() {
    return Text("The program was not closed properly last time !\r\nDo you want to load the last Backup ?");
}

// Files that add something to a project and are none themselves.
bool IsPart(const QString& file) {
    const QString kind = QFileInfo(file).suffix().toLower();
    return kind == QLatin1String("ist") || kind == QLatin1String("ptn");
}

}  // namespace

CSessionKeeper::CSessionKeeper(CMainWindow& mainWindow, Ask askUser)
    : window(mainWindow),
      session(mainWindow.Workstation().Session()),
      settings(mainWindow.Workstation().Settings()),
      folders(mainWindow.Workstation().ProgramFolders()),
      ask(std::move(askUser)) {}

void CSessionKeeper::Begin(const QString& file, const std::optional<PluginBlame>& blame) {
    if (session.IsGuest()) return OpenFile(file);
    const CrashMarks marks = MarkStart(settings);
    const QString project = IsPart(file) ? QString() : file;
    if (!blame || !OpenBlamed(*blame, project)) Choose(marks, project);
    if (EndWanted() || session.IsGuest()) return SetMarks(settings, marks);
    session.WriteBackup(false);
    MarkLoaded(settings);
    Follow();
    begun = true;
    if (IsPart(file)) OpenFile(file);
}

// What was being loaded, else what was being worked on. False when the user names another file, or there is nothing.
bool CSessionKeeper::OpenBlamed(const PluginBlame& blame, const QString& file) {
    leftOut = std::filesystem::path(blame.call.library).stem().string();
    const QString loading = QString::fromStdString(blame.project);
    const QString last = settings.ReadSettingString(kSettingsSection, QStringLiteral("ProjectFile"));
    if (!session.KeepCopy(session.CrashCopy())) return false;
    if (loading.isEmpty() ? !file.isEmpty() && file != last : !file.isEmpty() && file != loading) return false;
    if (loading.isEmpty()) return Open(session.CrashCopy(), true) || Open(folders.backupProject, true);
    const bool isCopy = QFileInfo(loading).absolutePath() + QLatin1Char('/') == folders.program;
    if (isCopy) return Open(loading, loading != folders.currentProject);
    return OpenAs(loading, loading, false);
}

void CSessionKeeper::Choose(const CrashMarks& marks, const QString& file) {
    // Whatever the user answers, the work before a crash can be restored later.
    if (marks.backupClosed == 0) session.KeepCopy(session.CrashCopy());
    switch (ChooseStartProject(marks.errorClosed, marks.backupClosed, window.BackupCountdown().Ticks())) {
        case EStartProject::kEmpty:
            return OfferSession();
        case EStartProject::kAsk:
            if (ask(QStringLiteral("QUIB Studio"), CrashQuestion())) return OpenCrashed();
            if (!EndWanted()) OpenFile(file);
            return;
        case EStartProject::kCurrent:
            if (file.isEmpty() || SessionIsOf(file)) {
                Open(folders.currentProject, false);
            } else if (!settings.IsOn(QStringLiteral("ProjectModified")) || session.KeepCopy(folders.currentProject)) {
                OpenFile(file);
            } else {
                BecomeGuest();
            }
            return;
    }
}

// The last start died while it loaded a project, which this one may do as well.
void CSessionKeeper::OfferSession() {
    if (!QFileInfo::exists(folders.currentProject)) {
        return window.ShowMessage(
            kProgram, Text("The last start ended while it loaded its project, so this one begins without. The project "
                           "can be opened from the File menu."));
    }
    if (!session.KeepCopy(folders.currentProject)) return BecomeGuest();
    const QString question = Text(
        "The last start ended while it loaded its project. Load the last session nevertheless? It also stays "
        "under File > Restore backup.");
    if (ask(kProgram, question)) Open(folders.currentProject, false);
}

// Better no backups than to write over the only copy of something.
void CSessionKeeper::BecomeGuest() {
    session.SetGuest();
    window.ShowMessage(
        kProgram, Text("The last session cannot be kept in \"%1\", so this window leaves it as it is and writes no "
                       "backups. Its work has to be saved before it closes.")
                      .arg(folders.backups));
}

void CSessionKeeper::OpenFile(const QString& file) {
    if (IsPart(file)) return window.TakeFile(file);
    if (!file.isEmpty()) window.Open(file);
}

// The journal is younger than the backup, but was written in haste.
void CSessionKeeper::OpenCrashed() {
    const QString newest = session.CrashCopy();
    if (!Open(newest, true) && newest != folders.backupProject) Open(folders.backupProject, true);
}

bool CSessionKeeper::Open(const QString& path, bool isBackup) {
    const QString file = settings.ReadSettingString(kSettingsSection, QStringLiteral("ProjectFile"));
    return OpenAs(path, QFileInfo::exists(file) ? file : QString(),
                  isBackup || settings.IsOn(QStringLiteral("ProjectModified")));
}

bool CSessionKeeper::OpenAs(const QString& path, const QString& projectFile, bool modified) {
    if (!QFileInfo::exists(path)) return false;
    QString error;
    if (!session.LoadSession(path, projectFile, modified, error,
                             [](float, const std::string&) { return !EndWanted(); })) {
        if (EndWanted()) return false;
        session.KeepCopy(path);
        window.ShowMessage(kProgram, error);
        return false;
    }
    std::vector<std::string> warnings = session.Warnings();
    std::erase_if(warnings, [this](const std::string& line) { return !leftOut.empty() && line.starts_with(leftOut); });
    window.ShowWarnings(warnings);
    return true;
}

// The session that was left last is a later state of this very file.
bool CSessionKeeper::SessionIsOf(const QString& file) const {
    const QFileInfo left(folders.currentProject);
    return left.exists() && left.lastModified() >= QFileInfo(file).lastModified() &&
           settings.ReadSettingString(kSettingsSection, QStringLiteral("ProjectFile")) == file;
}

// Name and mark of the project, so that the next start has them.
void CSessionKeeper::Follow() {
    const auto keep = [this] {
        settings.WriteSettingString(kSettingsSection, QStringLiteral("ProjectFile"), session.ProjectPath());
        settings.SetOn(QStringLiteral("ProjectModified"), session.IsModified());
    };
    QObject::connect(&session, &CSession::ProjectPathChanged, &window, keep);
    QObject::connect(&window.Workstation().Changes(), &CChanges::ModifiedChanged, &window, keep);
    keep();
}

bool CSessionKeeper::End(QString& error) {
    if (session.IsGuest()) return !session.IsModified() || !EndWanted() || session.WriteTimedCopy(error);
    if (!begun) return true;
    std::string reason;
    session.WriteCopy(folders.currentProject, [&reason](const std::string& told) { reason = told; });
    session.Saver().Finish();
    error = QString::fromStdString(reason);
    if (!reason.empty()) return false;
    MarkEnd(settings);
    return true;
}

CSessionKeeper::Ask AskInBox(QWidget* parent) {
    return [parent](const QString& title, const QString& text) {
        QMessageBox box(QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No, parent);
        box.setWindowFlag(Qt::WindowStaysOnTopHint);
        return box.exec() == QMessageBox::Yes;
    };
}

}  // namespace quib
