// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The switch that arms the recording of automation: a plain cap, and while it is on a red one with its letter in a
// disc, which the sound recorder never has. User-interface thread.

#include "controls/CSwitchCtrl.h"

namespace quib {

class CLaneArmCtrl : public CSwitchCtrl {
public:
    using CSwitchCtrl::CSwitchCtrl;
    void Draw() override;
};

}  // namespace quib
