// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ShortcutList.h"

#include <QMenu>
#include <QMenuBar>

#include "app/Commands.h"
#include "controls/CKeyFocus.h"
#include "controls/Mnemonics.h"
#include "editors/base/WindowKeys.h"
#include "editors/pianoroll/PatternCommands.h"
#include "texts/Texts.h"

namespace quib {

namespace {

void ListMenu(const QMenu& menu, const QString& before, const QString& way, std::vector<ShortcutRow>& rows) {
    AssignMnemonics(menu.actions());
    for (const QAction* const action : menu.actions()) {
        const bool isFile = action->data().toInt() == command::kRecentFile0;
        if (action->isSeparator() || !action->isVisible() || isFile) continue;
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

QString KeysTextOf(const FocusKey& row) {
    const QString keys = QKeySequence(row.key).toString(QKeySequence::NativeText);
    switch (row.use) {
        case EFocusKey::kArrow:
        case EFocusKey::kFineArrow:
        case EFocusKey::kMoveArrow:
            return keys.left(keys.lastIndexOf(QLatin1Char('+')) + 1) + Text("arrows");
        case EFocusKey::kPage:
            return keys + QStringLiteral(", ") + QKeySequence(Qt::Key_PageDown).toString(QKeySequence::NativeText);
        case EFocusKey::kEnd:
            return keys + QStringLiteral(", ") + QKeySequence(Qt::Key_End).toString(QKeySequence::NativeText);
        case EFocusKey::kMenu:
            return keys + QStringLiteral(", ") + QKeySequence(Qt::Key_Menu).toString(QKeySequence::NativeText);
        default:
            return QString(keys).replace(QStringLiteral("Backtab"), QStringLiteral("Tab"));
    }
}

ShortcutSection ControlKeys() {
    ShortcutSection section{Text("Controls of every window"), {}};
    for (const FocusKey& row : FocusKeys()) section.rows.push_back({Text(row.text), KeysTextOf(row)});
    section.rows.push_back({Text("Types the value"), Text("0 to 9")});
    return section;
}

QString KeysTextOf(const WindowKey& row) {
    const QString keys = QKeySequence(row.key).toString(QKeySequence::NativeText);
    if (row.kind == WindowKey::EKind::kKey) return keys;
    const QString before = keys.left(keys.lastIndexOf(QLatin1Char('+')) + 1);
    if (row.kind == WindowKey::EKind::kArrows) return before + Text("arrows");
    const auto named = [](Qt::Key key) { return QKeySequence(key).toString(QKeySequence::NativeText); };
    return row.kind == WindowKey::EKind::kLevel
               ? before + named(Qt::Key_Left) + QStringLiteral(", ") + named(Qt::Key_Right)
               : before + named(Qt::Key_Up) + QStringLiteral(", ") + named(Qt::Key_Down);
}

ShortcutSection SectionOf(const char* title, const WindowKeys& keys) {
    ShortcutSection section{Text(title), {}};
    for (const WindowKey& row : keys) section.rows.push_back({Text(row.text), KeysTextOf(row)});
    return section;
}

ShortcutSection RollKeys() {
    ShortcutSection section = SectionOf(TextKey("Piano roll"), PianoRollKeys());
    for (const PatternCommand& command : PatternCommands()) {
        section.rows.push_back({Text(command.text), QLatin1String(command.keyText)});
    }
    return section;
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
    sections.push_back(ControlKeys());
    sections.push_back(RollKeys());
    sections.push_back(SectionOf(TextKey("Automation"), AutomationKeys()));
    sections.push_back(SectionOf(TextKey("Song"), SongKeys()));
    sections.push_back(SectionOf(TextKey("Ball pad"), BallPadKeys()));
    return sections;
}

}  // namespace quib
