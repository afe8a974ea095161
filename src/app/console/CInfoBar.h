// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The bar at the foot of the console: the help of what is under the mouse, and at its right what is read seldom,
// the load, the breaks and the output. User-interface thread.

#include "app/console/CMasterPanels.h"

namespace quib {

class CInfoCtrl;

class CInfoBar : public CPanelCtrl, public CTicked {
public:
    CInfoBar(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext);
    void Draw() override;
    void Resize(int newWidth, int newHeight) override;
    void Tick() override;

    CInfoCtrl& Help() const noexcept { return *help; }

private:
    struct Figures {
        long load = -1;  // percent
        std::uint64_t xruns = 0;
        double rate = 0;  // hertz
        const void* output = nullptr;
        friend bool operator==(const Figures&, const Figures&) = default;
    };

    ConsoleContext context;
    Figures shown;
    CInfoCtrl* help;
    CLabelCtrl* load;
    CLabelCtrl* xruns;
    CLabelCtrl* device;
};

}  // namespace quib
