// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CEntryDialog.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace quib {

CEntryDialog::CEntryDialog(const QString& title, const QString& text, QWidget* parent)
    : QDialog(parent), edit(new QLineEdit(text, this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(title);
    edit->setMaxLength(kLongestText);
    edit->selectAll();
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(edit);
    layout->addWidget(buttons);
}

QString CEntryDialog::Text() const { return edit->text(); }

float CEntryDialog::NumberOf(const QString& text) {
    const QRegularExpression number(QStringLiteral("^[+-]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][+-]?[0-9]+)?"));
    QString plain = text.trimmed();
    plain.replace(QLatin1Char(','), QLatin1Char('.'));
    // Beyond a float's range this gives infinity, which is then clamped.
    return static_cast<float>(number.match(plain).captured().toDouble());
}

}  // namespace quib
