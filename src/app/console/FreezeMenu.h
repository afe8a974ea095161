// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What menus and the sign of a strip say of a frozen instrument. User-interface thread.

#include <QString>
#include <cstdint>

#include "document/CFreezing.h"

class QMenu;

namespace quib {

class CWorkstation;

// Freezes the instrument, or lets it sound live again; a stale one may be rendered again.
void AddFreezeItems(QMenu& menu, CWorkstation& station, std::uint32_t instrument);
// What the help bar tells over the sign.
QString FrozenHelp(const CFreezing::State& state);

}  // namespace quib
