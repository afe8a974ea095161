// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Cut, copy, paste, delete and select all: for the window that has the focus, and disabled while they could
// do nothing there. User-interface thread.

#include <QObject>
#include <array>
#include <memory>

#include "editors/base/CEditTarget.h"

class QAction;

namespace quib {

class CEditCommands : public QObject {
    Q_OBJECT

public:
    explicit CEditCommands(QObject* parent);
    // Acts while the parent's window is the active one.
    void SetMainTarget(std::unique_ptr<CEditTarget> target) { mainTarget = std::move(target); }

    // The menu's actions; owned by the menu.
    void Connect(EEdit command, QAction* action);
    // Looks which of them can do anything; from the timer and before the menu opens.
    void Update();

private:
    CEditTarget* Target() const;

    std::unique_ptr<CEditTarget> mainTarget;
    std::array<QAction*, 5> actions{};
};

}  // namespace quib
