// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CEditCommands.h"

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QWidget>

namespace quib {

CEditCommands::CEditCommands(QObject* parent) : QObject(parent) {
    connect(qApp, &QApplication::focusChanged, this, &CEditCommands::Update);
}

// The part of the active window that has the focus, else the window or what fills it.
CEditTarget* CEditCommands::Target() {
    if (auto* const focus = dynamic_cast<CEditTarget*>(QApplication::focusWidget())) return focus;
    QWidget* const active = QApplication::activeWindow();
    if (auto* const window = qobject_cast<QMainWindow*>(active)) {
        return dynamic_cast<CEditTarget*>(window->centralWidget());
    }
    return dynamic_cast<CEditTarget*>(active);
}

void CEditCommands::Connect(EEdit command, QAction* action) {
    actions[static_cast<std::size_t>(command)] = action;
    connect(action, &QObject::destroyed, this,
            [this, command] { actions[static_cast<std::size_t>(command)] = nullptr; });
    connect(action, &QAction::triggered, this, [command] {
        CEditTarget* const target = Target();
        if (target != nullptr && target->CanEdit(command)) target->Edit(command);
    });
}

void CEditCommands::Update() {
    const CEditTarget* const target = Target();
    for (std::size_t index = 0; index < actions.size(); ++index) {
        if (actions[index] == nullptr) continue;
        actions[index]->setEnabled(target != nullptr && target->CanEdit(static_cast<EEdit>(index)));
    }
}

}  // namespace quib
