// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A cap with the name of a lane and a dot of its accent; lit while the lane is shown. User-interface thread.

#include <functional>

#include "controls/CSwitchCtrl.h"
#include "document/CLanes.h"

namespace quib {

class CLaneCapCtrl : public CSwitchCtrl {
public:
    CLaneCapCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight);
    void Draw() override;
    // Gives the width that its text wants.
    int Show(const LaneEntry& lane, bool isShown);
    const LaneKey& Key() const noexcept { return key; }

private:
    LaneKey key;
    QString text;
    CValue lit;
};

}  // namespace quib
