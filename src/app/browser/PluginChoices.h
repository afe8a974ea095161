// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The plug-ins that the user can choose from. A choice stands for one library, whatever other libraries or the
// names that plug-ins give themselves are called. User-interface thread.

#include <QList>
#include <QString>

#include "app/CPluginCatalog.h"

namespace quib {

struct Folders;

struct PluginChoice {
    PluginEntry entry;  // without identity for one that has not been asked yet
    QString detail;     // tells it from others of its name and maker; else empty
    bool isBuiltIn = false;
};

// Those of the program's own folders, which are there at once, then what else the machine has.
QList<PluginChoice> PluginChoices(const Folders& folders, const CPluginCatalog& catalog, ESlotKind kind);

// Of the plug-in files of all formats, as filters of dialogs want them: "*.so".
QString PluginFilePatterns();

}  // namespace quib
