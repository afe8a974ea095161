// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The programs of a plug-in as menus and lists show them. User-interface thread.

#include <QStringList>

namespace quib {

class CPlugin;

// "1  Warm Pad", or the number alone for a program without a name; at most 4096.
QStringList ProgramNames(CPlugin& plugin);

}  // namespace quib
