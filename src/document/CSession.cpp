// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CSession.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <utility>

#include "document/DetachedProject.h"
#include "model/plugin/PluginMarks.h"
#include "platform/CAtomicFile.h"
#include "platform/CFileBytes.h"
#include "project/ProjectEngine.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr const char* kTimedPrefix = "backup-";
constexpr const char* kTimedSuffix = ".prg";
constexpr std::size_t kTimedBackups = 10;
constexpr qint64 kTimedInterval = 60;  // seconds

}  // namespace

CSession::CSession(const DocumentContext& document, const Parts& documentParts)
    : context(document),
      parts(documentParts),
      journal(
          context.changes, saver, [this] { return GatherState(); },
          [this](const CInstrument& instrument) { return parts.stack.HeldKeysOf(instrument); },
          [this](const std::string& error) { BackupDone(error); }) {}

void CSession::Tick() {
    if (!guest) journal.Tick(context.folders.journal.toStdString());
    saver.Poll();
}

bool CSession::Rescue(std::string& error) {
    const StateOfPlugin lastState = [](const std::shared_ptr<CPlugin>& plugin) { return plugin->LastState(); };
    ProjectState state = GatherState();
    for (auto& instrument : state.instruments) instrument = Detached(*instrument, lastState, {});
    DetachMaster(state, lastState);
    const QString path = guest ? TimedPath(QDateTime::currentDateTime()) : context.folders.journal;
    return CAtomicFile().Replace(path.toStdString(), BytesOf(state), error);
}

// The journal is younger unless the backup has been written since.
QString CSession::CrashCopy() const {
    const QFileInfo written(context.folders.journal);
    const bool isYounger =
        written.exists() && written.lastModified() >= QFileInfo(context.folders.backupProject).lastModified();
    return isYounger ? context.folders.journal : context.folders.backupProject;
}

QString CSession::ProjectName() const {
    return projectPath.isEmpty() ? Text("Untitled") : QFileInfo(projectPath).completeBaseName();
}

void CSession::NewProject() {
    warnings.clear();
    MarkProject({});
    ProjectState empty;
    empty.master.songMode = 0;  // there is no song yet: it would be silent
    Publish(std::move(empty), {});
}

bool CSession::LoadProject(const QString& path, QString& error, const LoadProgress& progress) {
    ProjectState state;
    std::string reason;
    MarkProject(path.toStdString());
    const bool read = ReadProjectFile(path.toStdString(), parts.places.Loader(), state, reason, progress);
    if (!read) {
        MarkProject({});
        error = QString::fromStdString(reason);
        return false;
    }
    warnings = state.warnings;
    Publish(std::move(state), path);
    return true;
}

bool CSession::LoadSession(const QString& path, const QString& projectFile, bool modified, QString& error,
                           const LoadProgress& progress) {
    if (!LoadProject(path, error, progress)) return false;
    SetSaved(projectFile);
    if (modified) context.changes.Touch();
    return true;
}

void CSession::Publish(ProjectState state, const QString& path) {
    parts.transport.Halt();
    parts.transport.Locate(0);
    context.changes.Settle();
    Q_EMIT AboutToReplace();
    context.changes.Clear();
    parts.places.Clear();
    if (state.master.timeSignature[0] <= 0) {
        state.master.timeSignature = {
            std::clamp(context.settings.ReadSettingInt(kTimeSignatureSection, QStringLiteral("BeatsPerBar"), 4), 1, 32),
            std::clamp(context.settings.ReadSettingInt(kTimeSignatureSection, QStringLiteral("BeatUnit"), 4), 1, 16)};
    }
    PublishProject(state, context.audio);
    parts.stack.ProjectReplaced();
    parts.presets.ProjectReplaced(state.master.presetSelected);
    parts.contents.ProjectReplaced(state.master.playlistStepNumber);
    parts.song.ProjectReplaced(state.markers);
    parts.controllers.ProjectReplaced(state.bindings);
    detector = state.detector;
    SetSaved(path);
    context.changes.Tell({EChange::kProject});
    journal.Restart();
    parts.selection.Renew(state.instruments.empty() ? -1 : 0);
}

ProjectState CSession::GatherState() {
    ProjectState state;
    GatherProject(context.audio, state);
    state.master.playlistStepNumber = parts.contents.PlaylistSteps();
    state.master.presetSelected = parts.presets.SelectedPreset().Get();
    state.detector = detector;
    state.markers = parts.song.Markers();
    state.bindings = parts.controllers.ForProject();
    return state;
}

std::string CSession::Bytes() {
    context.changes.Settle();
    CRecordWriter writer;
    WriteProject(writer, GatherState(),
                 [this](const CInstrument& instrument) { return parts.stack.HeldKeysOf(instrument); });
    return {writer.Bytes().data(), writer.Bytes().size()};
}

void CSession::SetSaved(const QString& path) {
    context.changes.SetClean();
    if (projectPath == path) return;
    projectPath = path;
    Q_EMIT ProjectPathChanged();
}

// Saved counts from the moment of gathering: what is edited while the disk works is not in the file.
void CSession::SaveProject(const QString& path, std::function<void(const QString& error)> done) {
    std::string bytes = Bytes();
    context.changes.SetClean();
    saver.Write(path.toStdString(), std::move(bytes), [this, path, done = std::move(done)](const std::string& reason) {
        if (!reason.empty()) {
            context.changes.Touch();
        } else if (projectPath != path) {
            projectPath = path;
            Q_EMIT ProjectPathChanged();
        }
        if (done) done(QString::fromStdString(reason));
    });
}

bool CSession::SaveProject(const QString& path, QString& error) {
    SaveProject(path, [&error](const QString& reason) { error = reason; });
    saver.Finish();
    return error.isEmpty();
}

void CSession::WriteCopy(const QString& path, CAsyncSave::Done done) {
    saver.Write(path.toStdString(), Bytes(), std::move(done));
}

void CSession::WriteBackup(bool timed) {
    if (guest) return;
    std::string bytes = Bytes();
    const std::size_t fingerprint = std::hash<std::string>()(bytes);
    const QDateTime now = QDateTime::currentDateTime();
    const bool isDue = !lastTimedBackup.isValid() || lastTimedBackup.secsTo(now) >= kTimedInterval;
    const auto done = [this](const std::string& error) { BackupDone(error); };
    if (timed && isDue && fingerprint != backedUp) {
        saver.Write(TimedPath(now).toStdString(), bytes, done);
        saver.Prune(context.folders.backups.toStdString(), kTimedPrefix, kTimedSuffix, kTimedBackups);
        lastTimedBackup = now;
        backedUp = fingerprint;
    }
    saver.Write(context.folders.backupProject.toStdString(), std::move(bytes), done);
}

// Told once, until a backup could be written again.
void CSession::BackupDone(const std::string& error) {
    if (!error.empty()) backedUp = 0;
    if (error.empty()) MarkProject({});  // from now on there is a copy
    if (std::exchange(backupFailed, !error.empty()) || error.empty()) return;
    context.notice(
        Text("Backups cannot be written, so a crash would lose your work: %1").arg(QString::fromStdString(error)));
}

QString CSession::TimedPath(const QDateTime& time) const {
    return context.folders.backups + QLatin1String(kTimedPrefix) + time.toString(QStringLiteral("yyyyMMdd-HHmmss")) +
           QLatin1String(kTimedSuffix);
}

// A second that is taken by something else gives way to the next one.
bool CSession::KeepCopy(const QString& path) {
    const QFileInfo file(path);
    if (!file.exists()) return true;
    CFileBytes bytes;
    std::string error;
    if (!bytes.Read(path.toStdString(), error)) return false;
    QDateTime time = file.lastModified();
    for (; QFileInfo::exists(TimedPath(time)); time = time.addSecs(1)) {
        CFileBytes other;
        if (other.Read(TimedPath(time).toStdString(), error) && other.View() == bytes.View()) return true;
    }
    if (!CAtomicFile().Replace(TimedPath(time).toStdString(), bytes.View(), error)) return false;
    saver.Prune(context.folders.backups.toStdString(), kTimedPrefix, kTimedSuffix, kTimedBackups);
    return true;
}

bool CSession::WriteTimedCopy(QString& error) {
    saver.Write(TimedPath(QDateTime::currentDateTime()).toStdString(), Bytes(),
                [&error](const std::string& reason) { error = QString::fromStdString(reason); });
    saver.Finish();
    return error.isEmpty();
}

QStringList CSession::TimedBackups() const {
    QStringList paths;
    const QDir folder(context.folders.backups);
    const QStringList names = folder.entryList({QStringLiteral("backup-*.prg")}, QDir::Files, QDir::Name);
    for (const QString& name : names) paths.prepend(folder.filePath(name));
    return paths;
}

}  // namespace quib
