// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a run does with the session that lies in the program folder: the project that it begins with, the
// marks by which the next start knows how it ended, and the session that it leaves. User-interface thread.

#include <QString>
#include <functional>

#include "app/CMainWindow.h"
#include "app/StartUp.h"
#include "model/plugin/PluginMarks.h"

namespace quib {

class CSessionKeeper {
public:
    // Asks a question that is answered by yes or no.
    using Ask = std::function<bool(const QString& title, const QString& text)>;

    CSessionKeeper(CMainWindow& mainWindow, Ask askUser);

    // Opens what the run begins with: the last session, its backup after a crash, or `file`; an instrument or a
    // pattern goes into what was opened. A session that
    // is not opened stays among the timed backups; one that cannot be kept there is not touched. When the
    // process is to end meanwhile (EndWanted), the next start finds what this one has found.
    // After a plug-in has ended the last run, the project of that run is opened without a question.
    void Begin(const QString& file, const std::optional<PluginBlame>& blame = {});
    // Writes the session for the next start. False, with the reason, when that was not possible: the next
    // start then offers the backup. A guest writes its unsaved work among the timed backups.
    bool End(QString& error);

private:
    void Choose(const CrashMarks& marks, const QString& file);
    bool OpenBlamed(const PluginBlame& blame, const QString& file);
    void OfferSession();
    void BecomeGuest();
    void OpenFile(const QString& file);
    void OpenCrashed();
    bool Open(const QString& path, bool isBackup);
    bool OpenAs(const QString& path, const QString& projectFile, bool modified);
    bool SessionIsOf(const QString& file) const;
    void Follow();

    CMainWindow& window;
    CSession& session;
    CSettings& settings;
    const Folders& folders;
    Ask ask;
    std::string leftOut;  // the plug-in that the user knows to be left out
    bool begun = false;
};

// Asks in a message box over `parent`, on top of all windows.
CSessionKeeper::Ask AskInBox(QWidget* parent);

}  // namespace quib
