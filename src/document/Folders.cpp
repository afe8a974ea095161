// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/Folders.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <filesystem>

#include "document/CSettings.h"
#include "platform/Paths.h"

namespace quib {

namespace fs = std::filesystem;

namespace {

// A second place that only ever receives a copy of the program folder.
constexpr const char* kSharedSection = "Shared";

QString WithSlash(const QString& folder) {
    return folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
}

QString FromPath(const fs::path& path) { return QString::fromStdString(path.string()); }

bool MakeFolder(const QString& folder) { return QDir().mkpath(folder); }

}  // namespace

Folders::Folders(const QString& programFolder)
    : program(WithSlash(programFolder)),
      patterns(program + QStringLiteral("Patterns/")),
      presets(program + QStringLiteral("Presets/")),
      instruments(program + QStringLiteral("Instruments/")),
      pluginInstruments(program + QStringLiteral("PluginInstruments/")),
      pluginEffects(program + QStringLiteral("PluginEffects/")),
      programs(program + QStringLiteral("Programs/")),
      loops(program + QStringLiteral("Loops/")),
      frozen(program + QStringLiteral("Frozen/")),
      backups(program + QStringLiteral("Backups/")),
      currentProject(program + QStringLiteral("current.prg")),
      backupProject(program + QStringLiteral("backup.prg")),
      journal(program + QStringLiteral("journal.prg")) {}

QString FindProgramFolder(const CSettings& settings, const QString& wanted) {
    if (!wanted.isEmpty()) {
        MakeFolder(wanted);
        return WithSlash(QFileInfo(wanted).absoluteFilePath());
    }
    if (IsPortableCopy()) return WithSlash(FromPath(ExecutableFolder()));
    const QString kept = settings.ReadSettingString(kSettingsSection, QStringLiteral("CurrentDir"));
    if (!kept.isEmpty() && MakeFolder(kept)) return WithSlash(kept);
    const QString own =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/QUIBSequencer/");
    MakeFolder(own);
    return own;
}

QStringList AddedPluginFolders(const CSettings& settings) {
    return settings.ReadSettingString(kSettingsSection, QStringLiteral("PluginFolders"))
        .split(QLatin1Char(':'), Qt::SkipEmptyParts);
}

void KeepPluginFolders(CSettings& settings, const QStringList& added) {
    settings.WriteSettingString(kSettingsSection, QStringLiteral("PluginFolders"), added.join(QLatin1Char(':')));
}

QStringList OwnPluginFolders(const Folders& folders, bool instruments) {
    const QString beside = WithSlash(FromPath(ShippedLibraries()));
    if (instruments) return {folders.pluginInstruments, beside + QStringLiteral("PluginInstruments/")};
    return {folders.pluginEffects, beside + QStringLiteral("PluginEffects/")};
}

QStringList PluginFolders(const Folders& folders, const CSettings& settings) {
    QStringList all = OwnPluginFolders(folders, true) + OwnPluginFolders(folders, false);
    all += AddedPluginFolders(settings);
    for (const fs::path& folder : SystemPluginFolders()) all.append(QString::fromStdString(folder.string()));
    QStringList existing;
    for (const QString& folder : all) {
        const QString real = QFileInfo(folder).canonicalFilePath();
        if (!real.isEmpty() && !existing.contains(real)) existing.append(real);
    }
    return existing;
}

void PrepareFolders(const Folders& folders, CSettings& settings) {
    for (const QString& folder : {folders.patterns, folders.instruments, folders.pluginInstruments}) {
        MakeFolder(folder);
    }
    MakeFolder(folders.pluginEffects);
    MakeFolder(folders.loops);
    // Where the loop player of the program looks, besides its own folder.
    if (!qEnvironmentVariableIsSet("QUIB_LOOPS")) qputenv("QUIB_LOOPS", folders.loops.toLocal8Bit());
    std::error_code ignored;
    fs::current_path(folders.program.toStdString(), ignored);

    if (!IsPortableCopy()) {
        settings.WriteSettingString(kSharedSection, QStringLiteral("CurrentDir"), folders.program);
        settings.WriteSettingString(kSettingsSection, QStringLiteral("CurrentDir"), folders.program);
    }
    const struct {
        const QString& folder;
        const char* name;
    } written[] = {{folders.patterns, "PatternDir"},       {folders.presets, "PresetDir"},
                   {folders.instruments, "InstrumentDir"}, {folders.programs, "ProgramDir"},
                   {folders.pluginEffects, "EffectDir"},   {folders.pluginInstruments, "PluginDir"}};
    for (const auto& entry : written) {
        MakeFolder(entry.folder);
        settings.WriteSettingString(kSettingsSection, QLatin1String(entry.name), entry.folder);
    }
    MakeFolder(folders.backups);
}

}  // namespace quib
