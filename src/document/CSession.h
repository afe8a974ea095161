// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The project as a whole: new, loading, saving, session and backups. User-interface thread.

#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <functional>
#include <string>
#include <vector>

#include "document/CAsyncSave.h"
#include "document/CContents.h"
#include "document/CControllers.h"
#include "document/CJournal.h"
#include "document/CPresets.h"
#include "document/CSong.h"
#include "document/CTransportControl.h"
#include "project/ProjectFile.h"
#include "project/ProjectState.h"

namespace quib {

class CSession : public QObject {
    Q_OBJECT

public:
    // The parts of the document that a project fills and is gathered from.
    struct Parts {
        CPluginPlaces& places;
        CSelection& selection;
        CInstrumentStack& stack;
        CContents& contents;
        CPresets& presets;
        CTransportControl& transport;
        CSong& song;
        CControllers& controllers;
    };

    CSession(const DocumentContext& document, const Parts& documentParts);

    void NewProject();
    bool LoadProject(const QString& path, QString& error, const LoadProgress& progress = {});
    // As LoadProject, from a copy of the project `projectFile` (empty: of one without a file).
    bool LoadSession(const QString& path, const QString& projectFile, bool modified, QString& error,
                     const LoadProgress& progress = {});
    // Gathers the state now and writes it on another thread; `done` is told the error, or nothing.
    void SaveProject(const QString& path, std::function<void(const QString& error)> done);
    bool SaveProject(const QString& path, QString& error);  // waits for the disk
    // Writes a copy without touching name and mark of the project. Another thread writes.
    void WriteCopy(const QString& path, CAsyncSave::Done done = {});
    // The periodic backup, and one more among the last ten with their times.
    void WriteBackup(bool timed);
    // Puts a copy of a file among the timed backups, under the time of its last change. True when it is there,
    // or when there is no such file.
    bool KeepCopy(const QString& path);
    // Writes the project among the timed backups now, and waits for the disk.
    bool WriteTimedCopy(QString& error);
    // Writes the project as a run that did not end properly would have left it, without a call to any plug-in:
    // of each it has the state that was stored last. Also on another thread while that of the windows stands still.
    bool Rescue(std::string& error);
    // What a run that did not end properly has written last.
    QString CrashCopy() const;
    // Goes on with the journal, and tells the ends of files; from the 40 ms timer.
    void Tick();
    // A guest in a folder that belongs to another run: its backups are not written any more.
    void SetGuest() noexcept { guest = true; }
    bool IsGuest() const noexcept { return guest; }
    QStringList TimedBackups() const;  // newest first
    ProjectState GatherState();
    // The project as its file would hold it now.
    std::string Bytes();
    QString ProjectPath() const { return projectPath; }
    QString ProjectName() const;
    bool IsModified() const { return context.changes.IsModified(); }
    // What was left out at the last loading, one line each.
    const std::vector<std::string>& Warnings() const noexcept { return warnings; }
    DetectorSettings& Detector() noexcept { return detector; }
    CAsyncSave& Saver() noexcept { return saver; }

Q_SIGNALS:
    // The steps of undo and all that belongs to the present project go now.
    void AboutToReplace();
    void ProjectPathChanged();

private:
    void Publish(ProjectState state, const QString& path);
    void SetSaved(const QString& path);
    void BackupDone(const std::string& error);
    QString TimedPath(const QDateTime& time) const;

    const DocumentContext& context;
    Parts parts;
    CAsyncSave saver;
    CJournal journal;
    DetectorSettings detector;
    QString projectPath;
    std::vector<std::string> warnings;
    QDateTime lastTimedBackup;
    std::size_t backedUp = 0;  // fingerprint of the last timed backup
    bool backupFailed = false;
    bool guest = false;
};

}  // namespace quib
