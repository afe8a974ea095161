// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The projects that were used last, newest first, as the settings keep them. User-interface thread.

#include <QStringList>

namespace quib {

class CSettings;

class CRecentFiles {
public:
    static constexpr int kMost = 8;

    explicit CRecentFiles(CSettings& settingsStore) : settings(settingsStore) {}

    // The paths that are kept, without gaps and without one twice; kept anew that way.
    QStringList Rebuild();
    // Puts a path in front.
    void Add(const QString& path);
    // Keeps these.
    void Seed(const QStringList& paths);

private:
    CSettings& settings;
};

// The folder of a file as it is shown, the user's own as "~".
QString ShortFolder(const QString& path);

}  // namespace quib
