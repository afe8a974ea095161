// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The texts of the windows by number, in English and French. User-interface thread.

#include <QString>

#include "texts/Language.h"

namespace quib {

// Empty when the table has no such number. Only Latin-1 comes through whole: of any other character the
// low byte is kept, but for the right single quotation mark, which becomes an apostrophe.
QString StringText(int id, ELanguage language);

}  // namespace quib
