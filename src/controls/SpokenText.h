// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a screen reader says of a control: "Kick, Level, -3.2 dB". User-interface thread.

#include <QString>

namespace quib {

class CControl;

// The name of the control alone: that of its value, else the title of its help.
QString SpokenTitle(const CControl& control);
// With the group that it stands in, its part (-1: the whole) and the value. Empty for what has no name.
QString SpokenName(const CControl& control, int part);
// Its help as it holds now.
QString SpokenHelp(const CControl& control);

}  // namespace quib
