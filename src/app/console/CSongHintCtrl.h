// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Says why nothing is heard when a song without items plays, with a button for each of the two ways out.
// User-interface thread.

#include "app/console/CMasterPanels.h"

namespace quib {

class CSongHintCtrl : public CPanelCtrl {
public:
    static constexpr int kHeight = 44;
    CSongHintCtrl(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext);
    void Draw() override;

private:
    ConsoleContext context;
    int textLeft = 0;
};

}  // namespace quib
