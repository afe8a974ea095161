// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Items that are dragged from the lane of one instrument over that of another. A number means another pattern
// there, so the drop copies the patterns, too, and says which they became; nothing changes before it.
// User-interface thread.

#include "document/CWorkstation.h"
#include "editors/playlist/ISongHost.h"

namespace quib {

class CLaneDrag {
public:
    CLaneDrag(CWorkstation& workstation, ISongHost& songHost) : station(workstation), host(songHost) {}

    // The mouse is over that lane; null: over none.
    void Follow(CPlayListCtrlEx& source, CPlayListCtrlEx* over);
    // True when the items have left their lane.
    bool Drop(CPlayListCtrlEx& source);
    // The selected items of a lane go to another one, so many steps away. False when that was refused.
    bool Move(CPlayListCtrlEx& source, CPlayListCtrlEx& target, int steps, bool copies);
    // The lanes are others.
    void Forget() noexcept { target = nullptr; }

private:
    CWorkstation& station;
    ISongHost& host;
    CPlayListCtrlEx* target = nullptr;
};

}  // namespace quib
