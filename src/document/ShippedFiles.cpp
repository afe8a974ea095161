// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ShippedFiles.h"

#include <QFileInfo>
#include <algorithm>
#include <filesystem>

#include "platform/Paths.h"

namespace quib {

namespace {

QString Slashed(const std::filesystem::path& folder) {
    return QString::fromStdString(folder.string()) + QLatin1Char('/');
}

}  // namespace

QStringList ExampleFiles() {
    const QString folder = Slashed(ShippedData() / "Programs");
    QStringList files;
    for (const char* const name : {"HouseMusic.prg", "HouseYa.prg", "Siren.prg", "Tempo100.prg", "BassDrums.prg"}) {
        files.append(folder + QLatin1String(name));
    }
    return files;
}

bool IsExample(const QString& path) {
    const QStringList examples = ExampleFiles();
    const QFileInfo wanted(path);
    return std::any_of(examples.begin(), examples.end(),
                       [&wanted](const QString& example) { return QFileInfo(example) == wanted; });
}

QString DocumentFile(const Folders& folders, const QString& name) {
    const QString own = folders.program + name;
    return QFileInfo::exists(own) ? own : Slashed(ShippedDocuments()) + name;
}

}  // namespace quib
