// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/browser/PluginChoices.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>

#include "document/Folders.h"
#include "model/plugin/PluginFormats.h"

namespace quib {

namespace {

// The libraries of the program's own folders for a kind, as far as they are not known to be of the other one.
QList<PluginEntry> OwnPlugins(const Folders& folders, const CPluginCatalog& catalog, bool instruments) {
    QHash<QString, PluginEntry> known;
    for (const PluginEntry& entry : catalog.All()) known.insert(entry.path, entry);
    QList<PluginEntry> own;
    for (const QString& folder : OwnPluginFolders(folders, instruments)) {
        for (const std::filesystem::path& path : PluginFilesIn(folder.toStdString(), false)) {
            const QFileInfo file(QString::fromStdString(path.string()));
            PluginEntry entry;
            entry.path = file.canonicalFilePath();
            entry.name = file.completeBaseName();
            entry.isInstrument = instruments;
            if (const auto asked = known.constFind(entry.path); asked != known.constEnd()) entry = *asked;
            if (!entry.isBroken && entry.isInstrument == instruments) own.append(entry);
        }
    }
    return own;
}

// Says more about the choices that are still alike.
void TellApart(QList<PluginChoice>& choices, const std::function<QString(const PluginEntry&)>& detail) {
    const auto shown = [](const PluginChoice& choice) {
        return choice.entry.name + QLatin1Char('\n') + choice.entry.vendor + QLatin1Char('\n') + choice.detail;
    };
    QHash<QString, int> count;
    for (const PluginChoice& choice : choices) ++count[shown(choice)];
    for (PluginChoice& choice : choices) {
        if (count[shown(choice)] > 1) choice.detail = detail(choice.entry);
    }
}

}  // namespace

QList<PluginChoice> PluginChoices(const Folders& folders, const CPluginCatalog& catalog, ESlotKind kind) {
    const bool instruments = kind == ESlotKind::kInstrument;
    QList<PluginChoice> choices;
    QSet<QString> listed;
    const auto list = [&](const QList<PluginEntry>& entries, bool builtIn) {
        for (const PluginEntry& entry : entries) {
            if (listed.contains(entry.path)) continue;
            listed.insert(entry.path);
            choices.append({entry, {}, builtIn});
        }
    };
    list(OwnPlugins(folders, catalog, instruments), true);
    list(instruments ? catalog.Instruments() : catalog.Effects(), false);
    TellApart(choices, [](const PluginEntry& entry) { return QFileInfo(entry.path).fileName(); });
    TellApart(choices, [](const PluginEntry& entry) { return entry.path; });
    return choices;
}

QString PluginFilePatterns() {
    QStringList patterns;
    for (const PluginFormat& format : PluginFormats()) {
        patterns.append(QLatin1Char('*') + QString::fromStdString(std::string(format.extension)));
    }
    return patterns.join(QLatin1Char(' '));
}

}  // namespace quib
