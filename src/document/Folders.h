// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The program folder and what lies in it. User-interface thread.

#include <QString>
#include <QStringList>

namespace quib {

class CSettings;

// Every path of a folder ends in a slash.
struct Folders {
    QString program;
    QString patterns;
    QString presets;
    QString instruments;
    QString pluginInstruments;
    QString pluginEffects;
    QString programs;
    QString loops;   // the user's own
    QString frozen;  // rendered instruments, which may be removed at any time
    QString backups;
    QString currentProject;  // file written at exit
    QString backupProject;   // file written while the program runs
    QString journal;         // file written soon after each change

    explicit Folders(const QString& programFolder);
    Folders() = default;
};

// `wanted` if it is not empty, else the folder of the executable in a portable copy, else "CurrentDir" of the
// settings, else the user's own folder for data. One that cannot be made is passed over.
QString FindProgramFolder(const CSettings& settings, const QString& wanted = {});

// Makes the folders and writes all of them into the settings, but for the place of a portable copy.
void PrepareFolders(const Folders& folders, CSettings& settings);

// Folders with plug-ins that the user has added.
QStringList AddedPluginFolders(const CSettings& settings);
void KeepPluginFolders(CSettings& settings, const QStringList& added);
// The folders of the program's own instruments, or effects: those of its folder, then those beside it.
QStringList OwnPluginFolders(const Folders& folders, bool instruments);
// Every folder in which plug-ins are looked for, those of the program first. Existing ones only.
QStringList PluginFolders(const Folders& folders, const CSettings& settings);

}  // namespace quib
