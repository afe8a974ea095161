// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A colour of the chosen palette by its name. User-interface thread.

#include "controls/CPalette.h"

namespace quib {

inline QRgb Colour(const char* name) { return Palette().Colour(QLatin1String(name)); }

}  // namespace quib
