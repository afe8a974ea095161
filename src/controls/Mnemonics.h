// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The letters that choose the entries of a menu: each entry gets one of its own, in every language. An entry that
// marks a letter itself keeps it. User-interface thread.

#include <QList>

class QAction;
class QMenu;
class QString;

namespace quib {

// Marks a letter of each text that has none and whose letters are not all taken.
void AssignMnemonics(const QList<QAction*>& actions);
// The same for a menu whenever it is about to be shown, as its entries may have changed.
void KeepMnemonics(QMenu& menu);
// The letter that a text marks; empty for none.
QString MnemonicOf(const QString& text);
// A text without the marks of letters.
QString PlainMenuText(const QString& text);

}  // namespace quib
