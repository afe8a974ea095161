// SPDX-License-Identifier: GPL-3.0-or-later
// The project as a whole: new, loading, saving, backups.
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <utility>

#include "document/CAutomationTake.h"
#include "document/CWorkstation.h"
#include "project/ProjectEngine.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr const char* kTimedPrefix = "backup-";
constexpr const char* kTimedSuffix = ".prg";
constexpr std::size_t kTimedBackups = 10;
constexpr qint64 kTimedInterval = 60;  // seconds

}  // namespace

QString CWorkstation::ProjectName() const {
    return projectPath.isEmpty() ? Text("Untitled") : QFileInfo(projectPath).completeBaseName();
}

void CWorkstation::NewProject() {
    warnings.clear();
    Publish({}, {});
}

bool CWorkstation::LoadProject(const QString& path, QString& error, const LoadProgress& progress) {
    ProjectState state;
    std::string reason;
    if (!ReadProjectFile(path.toStdString(), Loader(), state, reason, progress)) {
        error = QString::fromStdString(reason);
        return false;
    }
    warnings = state.warnings;
    Publish(std::move(state), path);
    return true;
}

bool CWorkstation::LoadSession(const QString& path, const QString& projectFile, bool modified, QString& error) {
    if (!LoadProject(path, error)) return false;
    SetSaved(projectFile);
    if (modified) Touch();
    return true;
}

void CWorkstation::Publish(ProjectState state, const QString& path) {
    Stop();
    Locate(0);
    recalls.clear();
    take = std::make_unique<CAutomationTake>();
    undo.clear();
    watched.clear();
    soloed.clear();
    loadedKeys.clear();
    for (const auto& instrument : state.instruments) {
        loadedKeys[instrument->Id()] = instrument->play.heldKeys.Items();
    }
    PublishProject(state, audio);
    presetSelected.Set(state.master.presetSelected);
    playlistSteps = state.master.playlistStepNumber;
    detector = state.detector;
    ApplySolo();
    SetSaved(path);
    current = -2;
    Q_EMIT ProjectReplaced();
    Q_EMIT InstrumentsChanged();
    SetCurrent(state.instruments.empty() ? -1 : 0);
}

ProjectState CWorkstation::GatherState() {
    ProjectState state;
    GatherProject(audio, state);
    state.master.playlistStepNumber = playlistSteps;
    state.master.presetSelected = presetSelected.Get();
    state.detector = detector;
    return state;
}

std::string CWorkstation::Bytes() {
    CRecordWriter writer;
    WriteProject(writer, GatherState(), [this](const CInstrument& instrument) { return HeldKeysOf(instrument); });
    return {writer.Bytes().data(), writer.Bytes().size()};
}

void CWorkstation::SetSaved(const QString& path) {
    touched = false;
    undo.setClean();
    TellModified();
    if (projectPath == path) return;
    projectPath = path;
    Q_EMIT ProjectPathChanged();
}

// Saved counts from the moment of gathering: what is edited while the disk works is not in the file.
void CWorkstation::SaveProject(const QString& path, std::function<void(const QString& error)> done) {
    std::string bytes = Bytes();
    touched = false;
    undo.setClean();
    TellModified();
    saver.Write(path.toStdString(), std::move(bytes), [this, path, done = std::move(done)](const std::string& reason) {
        if (!reason.empty()) {
            Touch();
        } else if (projectPath != path) {
            projectPath = path;
            Q_EMIT ProjectPathChanged();
        }
        if (done) done(QString::fromStdString(reason));
    });
}

bool CWorkstation::SaveProject(const QString& path, QString& error) {
    SaveProject(path, [&error](const QString& reason) { error = reason; });
    saver.Finish();
    return error.isEmpty();
}

void CWorkstation::WriteCopy(const QString& path, CAsyncSave::Done done) {
    saver.Write(path.toStdString(), Bytes(), std::move(done));
}

void CWorkstation::WriteBackup(bool timed) {
    std::string bytes = Bytes();
    const std::size_t fingerprint = std::hash<std::string>()(bytes);
    const QDateTime now = QDateTime::currentDateTime();
    const bool isDue = !lastTimedBackup.isValid() || lastTimedBackup.secsTo(now) >= kTimedInterval;
    if (timed && isDue && fingerprint != backedUp) {
        const QString name = QLatin1String(kTimedPrefix) + now.toString(QStringLiteral("yyyyMMdd-HHmmss"));
        saver.Write((folders.backups + name + QLatin1String(kTimedSuffix)).toStdString(), bytes);
        saver.Prune(folders.backups.toStdString(), kTimedPrefix, kTimedSuffix, kTimedBackups);
        lastTimedBackup = now;
        backedUp = fingerprint;
    }
    saver.Write(folders.backupProject.toStdString(), std::move(bytes));
}

void CWorkstation::KeepCopy(const QString& path) {
    const QFileInfo file(path);
    if (!file.exists()) return;
    const QString name = file.lastModified().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QFile::copy(path, folders.backups + QLatin1String(kTimedPrefix) + name + QLatin1String(kTimedSuffix));
    saver.Prune(folders.backups.toStdString(), kTimedPrefix, kTimedSuffix, kTimedBackups);
}

QStringList CWorkstation::TimedBackups() const {
    QStringList paths;
    const QDir folder(folders.backups);
    const QStringList names = folder.entryList({QStringLiteral("backup-*.prg")}, QDir::Files, QDir::Name);
    for (const QString& name : names) paths.prepend(folder.filePath(name));
    return paths;
}

}  // namespace quib
