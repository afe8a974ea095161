// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/browser/CPluginUse.h"

#include <QFileInfo>
#include <algorithm>

#include "app/CPluginCatalog.h"
#include "document/CSettings.h"

namespace quib {

namespace {
constexpr const char* kSection = "PluginUse";
constexpr const char* kName = "Uses";
}  // namespace

CPluginUse::CPluginUse(CSettings& store) : settings(store) {
    const QStringList lines = settings.ReadSettingString(QLatin1String(kSection), QLatin1String(kName))
                                  .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QStringList fields = line.split(QLatin1Char('\t'));
        if (fields.size() != 4) continue;
        const Use use{fields[1].toInt(), fields[2].toInt(), fields[3] == QLatin1String("1")};
        uses.insert(fields[0], use);
        newest = std::max(newest, use.last);
    }
}

QString CPluginUse::Key(const PluginEntry& entry) {
    return entry.identity + QLatin1Char(' ') + QFileInfo(entry.path).fileName();
}

void CPluginUse::Keep() {
    QStringList lines;
    for (auto use = uses.cbegin(); use != uses.cend(); ++use) {
        lines.append(QStringLiteral("%1\t%2\t%3\t%4")
                         .arg(use.key())
                         .arg(use->count)
                         .arg(use->last)
                         .arg(static_cast<int>(use->favourite)));
    }
    settings.WriteSettingString(QLatin1String(kSection), QLatin1String(kName), lines.join(QLatin1Char('\n')));
}

void CPluginUse::SetFavourite(const PluginEntry& entry, bool favourite) {
    uses[Key(entry)].favourite = favourite;
    Keep();
}

void CPluginUse::Loaded(const PluginEntry& entry) {
    Use& use = uses[Key(entry)];
    ++use.count;
    use.last = ++newest;
    Keep();
}

}  // namespace quib
