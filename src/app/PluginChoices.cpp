// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PluginChoices.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>

#include "app/CPluginCatalog.h"
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
            if (const auto asked = known.constFind(entry.path); asked != known.constEnd() && !asked->isBroken) {
                entry = *asked;
            }
            if (entry.isInstrument == instruments) own.append(entry);
        }
    }
    return own;
}

// Says more about the entries whose texts are alike.
template <class Detail>
void TellApart(QList<PluginChoice>& choices, const QList<PluginEntry>& entries, const Detail& detail) {
    QHash<QString, int> count;
    for (const PluginChoice& choice : choices) ++count[choice.text];
    for (qsizetype i = 0; i < choices.size(); ++i) {
        const QString more = detail(entries[i]);
        if (count[choices[i].text] > 1 && !more.isEmpty()) {
            choices[i].text = entries[i].name + QStringLiteral(" (") + more + QLatin1Char(')');
        }
    }
}

}  // namespace

QList<PluginChoice> PluginChoices(const Folders& folders, const CPluginCatalog& catalog, ESlotKind kind) {
    const bool instruments = kind == ESlotKind::kInstrument;
    QList<PluginEntry> entries;
    QSet<QString> listed;
    for (const PluginEntry& entry :
         OwnPlugins(folders, catalog, instruments) + (instruments ? catalog.Instruments() : catalog.Effects())) {
        if (listed.contains(entry.path)) continue;
        listed.insert(entry.path);
        entries.append(entry);
    }
    QList<PluginChoice> choices;
    for (const PluginEntry& entry : entries) choices.append({entry.name, entry.identity, entry.path});
    TellApart(choices, entries, [](const PluginEntry& entry) { return entry.vendor; });
    TellApart(choices, entries, [](const PluginEntry& entry) { return QFileInfo(entry.path).completeBaseName(); });
    TellApart(choices, entries, [](const PluginEntry& entry) { return entry.path; });
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
