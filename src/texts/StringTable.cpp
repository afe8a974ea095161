// SPDX-License-Identifier: GPL-3.0-or-later
#include "texts/StringTable.h"

#include <QFile>
#include <QHash>
#include <QTextStream>

namespace quib {

namespace {

using Table = QHash<int, QString>;

QString Narrowed(QString text) {
    for (QChar& character : text) {
        character = character == QChar(0x2019) ? QLatin1Char('\'') : QChar(character.unicode() & 0xFFU);
    }
    return text;
}

Table Load(const QString& path) {
    Table table;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return table;
    QTextStream stream(&file);
    while (!stream.atEnd()) {
        const QString line = stream.readLine();
        const qsizetype space = line.indexOf(QLatin1Char(' '));
        bool numbered = false;
        const int id = line.left(space).toInt(&numbered);
        if (numbered && space > 0) table.insert(id, Narrowed(line.mid(space + 1)));
    }
    return table;
}

}  // namespace

QString StringText(int id, ELanguage language) {
    static const Table english = Load(QStringLiteral(":/texts/English.txt"));
    static const Table french = Load(QStringLiteral(":/texts/French.txt"));
    return (language == ELanguage::kFrench ? french : english).value(id);
}

}  // namespace quib
