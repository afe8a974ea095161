// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Every text that the windows show, in English and French, for all layers of windows: tables/ has those that
// are named by their English, InfoTextTable.h the numbered help texts. The chosen language is the only state.
// User-interface thread.

#include <QString>

#include "texts/Language.h"

namespace quib {

// English until it is set.
void SetLanguage(ELanguage language);
ELanguage Language();

// The text that `english` names; English where it has no row.
QString Text(const char* english, ELanguage language);
// The same in the chosen language.
QString Text(const char* english);

// Names a text that is shown later, as in tables: gives its argument. Marks it for the test of the tables.
constexpr const char* TextKey(const char* english) noexcept { return english; }

// Empty when no text has this number. Only Latin-1 comes through whole: of any other character the low byte
// is kept, but for the right single quotation mark, which becomes an apostrophe.
QString InfoText(int number, ELanguage language);

}  // namespace quib
