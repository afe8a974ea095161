// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ShortcutList.h"

#include <QMenu>
#include <QMenuBar>

#include "controls/Mnemonics.h"

namespace quib {

namespace {

void ListMenu(const QMenu& menu, const QString& before, const QString& way, std::vector<ShortcutRow>& rows) {
    AssignMnemonics(menu.actions());
    for (const QAction* const action : menu.actions()) {
        if (action->isSeparator() || !action->isVisible()) continue;
        const QString name = before + PlainMenuText(action->text());
        const QString letter = MnemonicOf(action->text());
        const QString path = letter.isEmpty() ? way : way + QStringLiteral(", ") + letter;
        if (action->menu() != nullptr) {
            ListMenu(*action->menu(), name + QStringLiteral(" > "), path, rows);
            continue;
        }
        const QString keys = QKeySequence::listToString(action->shortcuts(), QKeySequence::NativeText);
        rows.push_back({name, keys.isEmpty() ? path : keys});
    }
}

}  // namespace

std::vector<ShortcutSection> ShortcutsOf(const QMenuBar& menus) {
    std::vector<ShortcutSection> sections;
    for (const QAction* const action : menus.actions()) {
        if (action->menu() == nullptr) continue;
        ShortcutSection section{PlainMenuText(action->text()), {}};
        ListMenu(*action->menu(), {}, QStringLiteral("Alt+") + MnemonicOf(action->text()), section.rows);
        sections.push_back(std::move(section));
    }
    return sections;
}

}  // namespace quib
