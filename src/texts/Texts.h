// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Every text that the windows show, in the language of the user. User-interface thread.

#include <QString>

#include "texts/Language.h"

namespace quib {

// English until it is set.
void SetLanguage(ELanguage language);
ELanguage Language();

// The text in the chosen language; English where it has no other. `english` names the text.
QString Text(const char* english);

}  // namespace quib
