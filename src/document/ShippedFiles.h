// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Projects and documents that come with the program, wherever it is installed. Any thread.

#include <QString>
#include <QStringList>

#include "document/Folders.h"

namespace quib {

// The examples, in the order in which they are offered. They are read only: a project of theirs is saved under
// another name.
QStringList ExampleFiles();
bool IsExample(const QString& path);
// A document of the program folder, else the installed one; `name` without a folder.
QString DocumentFile(const Folders& folders, const QString& name);

}  // namespace quib
