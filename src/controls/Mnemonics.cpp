// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/Mnemonics.h"

#include <QAction>
#include <QMenu>
#include <QSet>

namespace quib {

namespace {

// Where a marked letter stands; -1: none. Two marks in a row stand for the sign itself.
qsizetype MarkedPlace(const QString& text) {
    for (qsizetype place = 0; place + 1 < text.size(); ++place) {
        if (text[place] != QLatin1Char('&')) continue;
        if (text[place + 1] != QLatin1Char('&')) return place + 1;
        ++place;
    }
    return -1;
}

// Every keyboard types these as they are.
bool IsPlainLetter(QChar sign) { return sign.unicode() < 128 && sign.isLetterOrNumber(); }

// The places of a text in the order in which they are tried: beginnings of words before other letters, none behind
// a tab, where the key or a remark stands.
QList<qsizetype> Candidates(const QString& text) {
    QList<qsizetype> first;
    QList<qsizetype> others;
    const qsizetype tab = text.indexOf(u'\t');
    const qsizetype end = tab < 0 ? text.size() : tab;
    for (qsizetype place = 0; place < end; ++place) {
        if (!IsPlainLetter(text[place])) continue;
        const bool begins = place == 0 || !text[place - 1].isLetterOrNumber();
        (begins ? first : others).append(place);
    }
    return first + others;
}

}  // namespace

void AssignMnemonics(const QList<QAction*>& actions) {
    QSet<QChar> taken;
    QList<QAction*> wanting;
    for (QAction* const action : actions) {
        const QString text = action->text();
        const qsizetype marked = MarkedPlace(text);
        if (marked < 0) {
            if (!action->isSeparator()) wanting.append(action);
        } else {
            taken.insert(text[marked].toLower());
        }
    }
    for (QAction* const action : wanting) {
        QString text = action->text();
        for (const qsizetype place : Candidates(text)) {
            if (taken.contains(text[place].toLower())) continue;
            taken.insert(text[place].toLower());
            action->setText(text.insert(place, QLatin1Char('&')));
            break;
        }
    }
}

void KeepMnemonics(QMenu& menu) {
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu] {
        AssignMnemonics(menu.actions());
        for (QAction* const action : menu.actions()) {
            if (action->menu() != nullptr) AssignMnemonics(action->menu()->actions());
        }
    });
}

QString MnemonicOf(const QString& text) {
    const qsizetype marked = MarkedPlace(text);
    return marked < 0 ? QString() : text.mid(marked, 1).toUpper();
}

QString PlainMenuText(const QString& text) {
    QString plain;
    for (qsizetype place = 0; place < text.size(); ++place) {
        if (text[place] == QLatin1Char('&') && place + 1 < text.size()) ++place;
        plain += text[place];
    }
    return plain;
}

}  // namespace quib
