// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// How far a pattern has played, as a line that fills. User-interface thread.

#include "controls/CControl.h"

namespace quib {

class CPatternLineCtrl : public CControl, public CTicked {
public:
    // `shareSource`: 0..1, asked for with each tick.
    CPatternLineCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                     std::function<float()> shareSource);
    void Draw() override;
    void Tick() override;

private:
    std::function<float()> source;
    int filled = 0;  // skin pixels
};

}  // namespace quib
