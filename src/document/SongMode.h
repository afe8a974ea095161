// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What playing follows. User-interface thread.

namespace quib {

class CWorkstation;

// The song, or each instrument's own pattern; one step of undo.
void SetSongMode(CWorkstation& station, bool on);

}  // namespace quib
