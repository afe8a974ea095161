// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/PanelFiles.h"

#include <QDir>
#include <QFile>
#include <cstdio>

namespace quib {

namespace {

std::optional<PanelLayout> ReadPanelFile(const QString& path) {
    QFile file(path);
    std::string error = "cannot be read";
    std::optional<PanelLayout> layout;
    // One byte more, so that what is too large is seen to be.
    if (file.open(QIODevice::ReadOnly))
        layout = ReadPanelLayout(file.read(PanelLayout::kMaximumBytes + 1).toStdString(), error);
    if (!layout) std::fprintf(stderr, "%s: %s\n", qPrintable(path), error.c_str());
    return layout;
}

}  // namespace

std::optional<PanelLayout> FindPanelLayout(const std::string& identity, const QString& userFolder) {
    for (const QString& folder : {userFolder, QStringLiteral(":/panels")}) {
        if (folder.isEmpty()) continue;
        const QDir directory(folder);
        for (const QString& name : directory.entryList({QStringLiteral("*.panel")}, QDir::Files, QDir::Name)) {
            auto layout = ReadPanelFile(directory.filePath(name));
            if (layout && layout->identity == identity) return layout;
        }
    }
    return std::nullopt;
}

}  // namespace quib
