// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CRecentFiles.h"

#include <QDir>
#include <QFileInfo>

#include "document/CSettings.h"

namespace quib {

namespace {
QString Name(qsizetype index) { return QStringLiteral("Project%1").arg(index + 1); }
}  // namespace

QString ShortFolder(const QString& path) {
    QString folder = QFileInfo(path).absolutePath();
    const QString home = QDir::homePath();
    if (folder == home || folder.startsWith(home + u'/')) folder.replace(0, home.size(), u'~');
    return folder;
}

QStringList CRecentFiles::Rebuild() {
    QStringList paths;
    for (int index = 0; index < kMost; ++index) {
        const QString path = settings.ReadSettingString(kRecentFilesSection, Name(index));
        if (!path.isEmpty() && !paths.contains(path)) paths.append(path);
    }
    if (!paths.isEmpty()) {
        settings.DeleteSettingSection(kRecentFilesSection);
        Seed(paths);
    }
    return paths;
}

void CRecentFiles::Add(const QString& path) {
    QStringList paths = Rebuild();
    paths.removeAll(path);
    paths.prepend(path);
    settings.DeleteSettingSection(kRecentFilesSection);
    Seed(paths.mid(0, kMost));
}

void CRecentFiles::Seed(const QStringList& paths) {
    for (qsizetype index = 0; index < paths.size(); ++index) {
        settings.WriteSettingString(kRecentFilesSection, Name(index), paths[index]);
    }
}

}  // namespace quib
