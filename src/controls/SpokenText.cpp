// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/SpokenText.h"

#include <QStringList>

#include "controls/CControl.h"
#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

namespace {

const QString kDash = QStringLiteral(" - ");

// "MASTER LEVEL" is for the eye.
QString Sentence(const QString& title) { return title.left(1) + title.mid(1).toLower(); }

}  // namespace

QString SpokenHelp(const CControl& control) {
    const int number = control.InfoNumber();
    return number >= 0 ? InfoText(number, Language()) : control.infoText;
}

QString SpokenTitle(const CControl& control) {
    if (!control.name.isEmpty()) return control.name;
    const QString help = SpokenHelp(control);
    const qsizetype end = help.indexOf(kDash);
    return end > 0 ? Sentence(help.left(end)) : QString();
}

QString SpokenName(const CControl& control, int part) {
    QStringList words;
    for (const CControl* group = control.Parent(); group != nullptr; group = group->Parent()) {
        if (!group->name.isEmpty()) words.prepend(group->name);
    }
    const QString title = SpokenTitle(control);
    if (!title.isEmpty()) words.append(title);
    QString value = control.SpokenValue();
    if (part >= 0) {
        const ControlPart one = control.PartAt(part);
        words.append(one.name);
        value = one.value;
    }
    if (!value.isEmpty() && (words.isEmpty() || words.last() != value)) words.append(value);
    return words.join(QStringLiteral(", "));
}

}  // namespace quib
