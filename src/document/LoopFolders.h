// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The folders of loops and the loop players of a project, and a project with its loops in one folder for another
// machine. User-interface thread.

#include <QString>
#include <QStringList>
#include <string>

namespace quib {

class CWorkstation;

// The file behind a loop that a player tells by that name; empty where there is none.
QString FileOfLoop(const CWorkstation& document, const std::string& name);

// Every loop player plays what its folders hold now.
void FollowLoopFolders(CWorkstation& document);

// Loop players whose patterns have notes at keys without a loop, one line each.
QStringList MissingLoops(CWorkstation& document);

// Writes the project into `folder`, which is made, and copies of the loops that its patterns play into "Loops" there,
// under names that begin with their keys. `told`: what was written, and a line each about what else the other machine
// needs. False with `error`.
bool CollectProject(CWorkstation& document, const QString& folder, QStringList& told, QString& error);

}  // namespace quib
