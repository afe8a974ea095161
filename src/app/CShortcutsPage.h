// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The page that lists every key, with a field to search in it. Stays open beside the others.
// User-interface thread.

#include <QDialog>

#include "app/ShortcutList.h"

class QLineEdit;
class QTreeWidget;

namespace quib {

class CShortcutsPage : public QDialog {
    Q_OBJECT

public:
    explicit CShortcutsPage(QWidget* parent);
    // Lists these anew and comes to the front.
    void Show(const std::vector<ShortcutSection>& sections);
    // Shows the rows alone that have each of the words, in the command or in its keys.
    void Search(const QString& words);

private:
    QLineEdit* field;
    QTreeWidget* list;
};

}  // namespace quib
