// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The plug-ins of the machine: every library of the plug-in folders, asked by quib-scan in a process of its
// own, one after the other, so that a broken one takes nothing down. What was learnt is kept in a file
// until the library changes. User-interface thread; never waits but in Ask.

#include <QHash>
#include <QList>
#include <QObject>
#include <QProcess>
#include <QStringList>
#include <memory>

#include "model/plugin/CPluginFinder.h"

namespace quib {

// Why a library could not be read.
enum class EPluginFailure {
    kNone,
    kHung,          // did not answer in time
    kEnded,         // crashed, or ended the process
    kWrongMachine,  // a library of another kind of machine
    kNoEntry,       // no plug-in at all
    kRefused,
    kEndedProgram,  // ended this program the last time it was used
    kNotTried       // the scanner does not start
};

struct PluginEntry {
    QString name;
    QString path;  // of the library
    QString vendor;
    QString identity;  // format and the plug-in's id in it, "vst2:31366378"; empty for a broken one
    bool isInstrument = false;
    bool isBroken = false;  // crashed, hung or refused
    EPluginFailure failure = EPluginFailure::kNone;
    QString error;       // of a broken one, as the scanner told it
    int category = 0;    // as a number of its format
    qint64 changed = 0;  // of the library when it was asked, milliseconds
    qint64 size = 0;     // bytes

    friend bool operator==(const PluginEntry&, const PluginEntry&) = default;
};

// In words of the chosen language; empty for one that was read.
QString FailureText(const PluginEntry& entry);

class CPluginCatalog : public QObject {
    Q_OBJECT

public:
    CPluginCatalog(const QString& scannerProgram, const QString& cacheFile);
    ~CPluginCatalog() override;

    // Folders with their sub-folders; the first folder wins where two have a library of one name.
    void SetFolders(const QStringList& pluginFolders) { folders = pluginFolders; }
    // Asks what is new or has changed. Does nothing while it is being done.
    void Scan();
    // Stops after the library under way has been given up.
    void Cancel();
    bool IsScanning() const noexcept { return scanning; }
    // Holds the scan after the library under way, or goes on with it.
    void SetPaused(bool hold);
    bool IsPaused() const noexcept { return paused; }
    // Libraries that the scan under way has seen, of how many, and the one that is being asked.
    int Done() const noexcept { return static_cast<int>(next); }
    int Total() const noexcept { return static_cast<int>(libraries.size()); }
    QString Current() const;
    // Asks a library again that could not be read, as part of a scan.
    void AskAgain(const QString& path);
    // The same at once; waits. False with the reason when it still cannot be read.
    bool AskNow(const QString& path, QString& error);
    // From now on the library, a path or the name of a file, counts as one that ends the program. Gives its name.
    QString Block(const QString& library);

    // What can be loaded, in the order of the folders and of the names in them.
    QList<PluginEntry> Instruments() const { return Select(true); }
    QList<PluginEntry> Effects() const { return Select(false); }
    QList<PluginEntry> All() const { return entries; }
    // Those that could not be read, but for what is no plug-in at all.
    QList<PluginEntry> Failed() const;
    CPluginFinder::Identities Identities() const;

    // What is known of a library without asking it.
    bool Knows(const QString& path, PluginEntry& entry) const;
    // What one library is; asks it, and waits, when nobody did yet. False, with `error`, for a broken one.
    bool Ask(const QString& path, PluginEntry& entry, QString& error);

Q_SIGNALS:
    void Progressed(int done, int total, const QString& name);
    void Finished();  // also when it was cancelled

private:
    QList<PluginEntry> Select(bool instruments) const;
    QStringList FindLibraries() const;
    void ReadCache();
    void WriteCache() const;
    void AskNext();
    void TakeAnswer();
    void End();
    void Learn(const PluginEntry& entry);
    static PluginEntry Describe(const QString& path, QProcess& asked);

    QString scanner;
    QString cachePath;
    QStringList folders;
    QHash<QString, PluginEntry> known;  // by path
    QList<PluginEntry> entries;
    QList<PluginEntry> gathered;  // by the scan under way
    QStringList libraries;        // of the scan under way
    qsizetype next = 0;
    bool scanning = false;
    bool paused = false;
    bool learnt = false;
    std::unique_ptr<QProcess> process;
};

}  // namespace quib
