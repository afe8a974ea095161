// SPDX-License-Identifier: GPL-3.0-or-later
#include "texts/Texts.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_map>

#include "texts/InfoTextTable.h"
#include "texts/TextTable.h"

namespace quib {

namespace {

ELanguage chosen = ELanguage::kEnglish;

using Rows = std::unordered_map<std::string_view, const char*>;

Rows RowsOfAllTables() {
    Rows rows;
    for (const auto& table : kTextTables) {
        for (const KeyedText& text : table) rows.emplace(text.english, text.french);
    }
    return rows;
}

const Rows french = RowsOfAllTables();

QString Narrowed(QString text) {
    for (QChar& character : text) {
        character = character == QChar(0x2019) ? QLatin1Char('\'') : QChar(character.unicode() & 0xFFU);
    }
    return text;
}

}  // namespace

void SetLanguage(ELanguage language) { chosen = language; }

ELanguage Language() { return chosen; }

QString Text(const char* english, ELanguage language) {
    if (language == ELanguage::kEnglish) return QString::fromUtf8(english);
    const auto row = french.find(english);
    return QString::fromUtf8(row == french.end() ? english : row->second);
}

QString Text(const char* english) { return Text(english, chosen); }

QString InfoText(int number, ELanguage language) {
    const auto row = std::find_if(std::begin(kInfoTexts), std::end(kInfoTexts),
                                  [number](const NumberedText& text) { return text.number == number; });
    if (row == std::end(kInfoTexts)) return {};
    return Narrowed(QString::fromUtf8(language == ELanguage::kFrench ? row->french : row->english));
}

}  // namespace quib
