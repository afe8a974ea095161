// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where patterns that are chosen during playing begin, as menus offer it. User-interface thread.

#include <QString>
#include <array>

#include "engine/EngineSettings.h"

class QMenu;

namespace quib {

class CWorkstation;

// In the order of the menu.
inline constexpr std::array kLaunches = {ELaunch::kPatternEnd, ELaunch::kBeat, ELaunch::kBar};
// "At the end of the pattern".
QString LaunchText(ELaunch launch);
// "end", "beat", "bar".
QString LaunchWord(ELaunch launch);
void FillLaunchMenu(QMenu& menu, CWorkstation& station);

}  // namespace quib
