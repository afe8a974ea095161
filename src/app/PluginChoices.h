// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The plug-ins that menus offer. A choice stands for one library, whatever other libraries or the names that
// plug-ins give themselves are called. User-interface thread.

#include <QList>
#include <QString>

#include "model/plugin/PluginIdentity.h"

namespace quib {

class CPluginCatalog;
struct Folders;

struct PluginChoice {
    QString text;      // as menus show it; no two of a list are alike
    QString identity;  // format and the plug-in's id in it; empty for one that has not been asked yet
    QString path;      // of the library
};

// Those of the program's own folders, which are there at once, then what else the machine has. Plug-ins of one
// name are told apart by their makers, else by their files.
QList<PluginChoice> PluginChoices(const Folders& folders, const CPluginCatalog& catalog, ESlotKind kind);

// Of the plug-in files of all formats, as filters of dialogs want them: "*.so".
QString PluginFilePatterns();

}  // namespace quib
