// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What stands before a lane of the song: colour, number and name of the instrument, mute, solo and meter. A click makes
// the instrument the current one. User-interface thread.

#include "controls/CControl.h"
#include "document/CWorkstation.h"

namespace quib {

class CSwitchCtrl;
class CVuCtrl;

class CLaneHeadCtrl : public CControl, public CTicked {
public:
    CLaneHeadCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                  CWorkstation& workstation, std::shared_ptr<CInstrument> shown, QRgb trackColour);

    void Draw() override;
    void OnLButtonDown(int px, int py, int button) override;
    void Resize(int newWidth, int newHeight) override;
    void Tick() override;

    std::function<void()> onPress;

private:
    CWorkstation& station;
    std::shared_ptr<CInstrument> instrument;
    QRgb track;
    CValue soloShown;
    CSwitchCtrl* mute = nullptr;
    CSwitchCtrl* solo = nullptr;
    CVuCtrl* meter = nullptr;
};

}  // namespace quib
