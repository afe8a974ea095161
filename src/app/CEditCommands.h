// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Cut, copy, paste, delete and select all: for the window that has the focus, and disabled while they could
// do nothing there. User-interface thread.

#include <QObject>
#include <array>

#include "editors/base/CEditTarget.h"

class QAction;

namespace quib {

class CEditCommands : public QObject {
    Q_OBJECT

public:
    explicit CEditCommands(QObject* parent);
    // The menu's actions; owned by the menu.
    void Connect(EEdit command, QAction* action);
    // Looks which of them can do anything; from the timer and before the menu opens.
    void Update();

private:
    static CEditTarget* Target();

    std::array<QAction*, 5> actions{};
};

}  // namespace quib
