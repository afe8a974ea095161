// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The row of tools above the song. A tool that finds no room is in the menu behind them. User-interface thread.

#include <functional>

#include "controls/CControl.h"
#include "editors/playlist/CSongCommands.h"

namespace quib {

class CLabelCtrl;
class CLabelMenuCtrl;
class CSwitchCtrl;
class CZoomCtrl;

class CSongToolBar : public CControl {
public:
    static constexpr int kHeight = 28;

    CSongToolBar(CWinControl& window, std::uint32_t number, CWorkstation& workstation, SongView& shown,
                 CSongCommands& songCommands);

    void Draw() override;
    void Resize(int newWidth, int newHeight) override;
    // What the tools show: of that lane, which may be null.
    void ShowTexts(const CPlayListCtrlEx* lane);

    std::function<void(int direction)> onZoom;
    std::function<void()> onClose;
    std::function<void()> onWholeWindow;

private:
    void BuildChoices();
    void BuildCommands();
    void BuildWindow();
    void Add(CControl& control, int room);
    CLabelMenuCtrl& AddMenu(int info, int room, std::function<void(QMenu&)> fill);
    void AddButton(const QString& text, int info, const std::function<void()>& run);
    void FillSnaps(QMenu& menu);

    CWorkstation& station;
    SongView& view;
    CSongCommands& commands;
    CValue followShown;

    struct Tool {
        CControl* control;
        int width;
    };
    std::vector<Tool> tools;
    CLabelMenuCtrl* patternMenu = nullptr;
    CLabelMenuCtrl* snapMenu = nullptr;
    CLabelMenuCtrl* launchMenu = nullptr;
    CLabelMenuCtrl* more = nullptr;
    CZoomCtrl* zoom = nullptr;
    CSwitchCtrl* whole = nullptr;
    CSwitchCtrl* close = nullptr;
};

}  // namespace quib
