// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The look of windows and dialogs: in the colours of the chosen palette and the font of the skin.
// User-interface thread.

#include <QColor>
#include <QRect>
#include <QSize>

#include "controls/Colours.h"
#include "texts/Texts.h"

namespace quib {

class CSettings;

// For the whole program; may be called again for another scale (percent) or palette.
void ApplyLook(int scale);
// At the first start: the help's language, French where it is the desktop's.
void KeepFirstLanguage(CSettings& settings);
// English, unless French alone is chosen.
ELanguage ChosenLanguage(const CSettings& settings);

// A colour of the chosen palette by its name, for what Qt draws.
QColor LookColour(const char* name);

// The palette that the settings name; the dark one for a number that there is not.
EPalette StoredPalette(const CSettings& settings);
void StorePalette(CSettings& settings, EPalette palette);

// The largest scale in percent at which a window of `least` pixels at 100 % fits a screen; 75 at the least.
int LargestScale(const QSize& least, const QSize& screen) noexcept;

// Where a window of that size opens that belongs to `anchor`: beside it, inside the screen, and clear of `bars`,
// which must stay at hand; over the anchor where there is no other room, over the bars last of all.
QPoint PlaceBeside(const QSize& window, const QRect& anchor, const QRect& bars, const QRect& screen) noexcept;

}  // namespace quib
