// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The dialog in which a value is typed. User-interface thread.

#include <QDialog>

class QLineEdit;

namespace quib {

class CEntryDialog : public QDialog {
    Q_OBJECT

public:
    static constexpr int kLongestText = 512;

    // Deletes itself when it is closed.
    CEntryDialog(const QString& title, const QString& text, QWidget* parent);

    QString Text() const;
    // The number at the start of a text, with a point or a comma; 0 when there is none.
    static float NumberOf(const QString& text);

private:
    QLineEdit* edit;
};

}  // namespace quib
