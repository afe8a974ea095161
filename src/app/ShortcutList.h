// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which keys do what, read from the menus and from the tables by which keys act. User-interface thread.

#include <QString>
#include <vector>

class QMenuBar;

namespace quib {

struct ShortcutRow {
    QString command;
    QString keys;  // as the menus write them; the way through the menus where a command has none
};

struct ShortcutSection {
    QString title;
    std::vector<ShortcutRow> rows;
};

std::vector<ShortcutSection> ShortcutsOf(const QMenuBar& menus);

}  // namespace quib
