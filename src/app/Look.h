// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The look of windows and dialogs: dark, in the font of the skin. User-interface thread.

#include "texts/Texts.h"

namespace quib {

class CSettings;

// For the whole program; may be called again for another scale (percent).
void ApplyLook(int scale);
// At the first start: the help's language, French where it is the desktop's.
void KeepFirstLanguage(CSettings& settings);
// English, unless French alone is chosen.
ELanguage ChosenLanguage(const CSettings& settings);

}  // namespace quib
