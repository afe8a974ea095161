// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CUserPrograms.h"

#include <QDir>

#include "document/CWorkstation.h"
#include "model/plugin/CPlugin.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr const char* kExtension = ".fxp";
constexpr qsizetype kLongestName = 64;
}  // namespace

CUserPrograms::CUserPrograms(CWorkstation& projectOwner, const CPlugin& ofPlugin)
    : workstation(projectOwner),
      plugin(ofPlugin),
      folder(projectOwner.ProgramFolders().program + QStringLiteral("PluginPrograms/") +
             QString::fromStdString(ofPlugin.Identity().Key()).replace(QLatin1Char(':'), QLatin1Char('-'))) {
    Refresh();
}

void CUserPrograms::Refresh() {
    names.clear();
    const QStringList files = QDir(folder).entryList({QLatin1Char('*') + QLatin1String(kExtension)}, QDir::Files,
                                                     QDir::Name | QDir::IgnoreCase);
    for (const QString& file : files) names.append(file.chopped(static_cast<qsizetype>(qstrlen(kExtension))));
}

bool CUserPrograms::IsName(const QString& name) {
    return !name.isEmpty() && name.size() <= kLongestName && name == name.trimmed() &&
           !name.startsWith(QLatin1Char('.')) && !name.contains(QLatin1Char('/')) && !name.contains(QChar::Null);
}

QString CUserPrograms::PathOf(const QString& name) const {
    return folder + QLatin1Char('/') + name + QLatin1String(kExtension);
}

bool CUserPrograms::Save(const QString& name, QString& error) {
    SlotPlace place;
    if (!IsName(name) || !QDir().mkpath(folder) || !workstation.Places().FindPlugin(&plugin, place)) {
        error = Text("\"%1\" cannot be the name of a program.").arg(name);
        return false;
    }
    const bool saved = workstation.Places().SaveProgram(place, PathOf(name), error);
    Refresh();
    return saved;
}

bool CUserPrograms::Load(const QString& name, QString& error) {
    SlotPlace place;
    return workstation.Places().FindPlugin(&plugin, place) &&
           workstation.Places().LoadProgram(place, PathOf(name), error);
}

}  // namespace quib
