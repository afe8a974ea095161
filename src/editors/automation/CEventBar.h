// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The rows above the curve: tools, and the shown lane with its selected point. They read and change their
// window. User-interface thread.

#include <array>

#include "controls/CControl.h"

class QMenu;

namespace quib {

class CLabelCtrl;
class CLabelMenuCtrl;
class CWinControlParamEvent;

class CEventBar : public CControl {
public:
    CEventBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
              CWinControlParamEvent& owner);
    void Draw() override;
    void Resize(int newWidth, int newHeight) override;
    // After anything that it shows has changed.
    void ShowState();
    // Whether recording replaces or adds; it is set in the console too.
    void ShowMode();

    static constexpr int kTools = 40;
    static constexpr int kHead = 32;

private:
    void AddTools();
    void AddHead();
    void FillSnaps(QMenu& menu);
    void FillModes(QMenu& menu);

    CWinControlParamEvent& window;
    CValue patternShown, songShown;
    std::array<CValue, 6> toolShown;
    CLabelMenuCtrl* snap = nullptr;
    CLabelMenuCtrl* mode = nullptr;
    CLabelCtrl* name = nullptr;
    CLabelCtrl* owner = nullptr;
    CLabelCtrl* timeLabel = nullptr;
    CLabelCtrl* time = nullptr;
    CLabelCtrl* valueLabel = nullptr;
    CLabelCtrl* value = nullptr;
    CControl* bin = nullptr;
};

}  // namespace quib
