// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The loops that are to be written. User-interface thread.

#include <functional>
#include <vector>

#include "controls/CControl.h"
#include "export/loops/LoopCut.h"

namespace quib {

struct ListedLoop {
    QString name;
    LoopCut cut;
    double bar = 0;  // of the file, from 1
    bool wanted = true;
    QString state;
};

class CLoopListCtrl : public CControl {
public:
    CLoopListCtrl(CWinControl& window, int left, int top);

    void Show(const std::vector<ListedLoop>& next, int nextChosen);
    void Draw() override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;

    std::function<void(int index)> onChoose;
    std::function<void(int index)> onWanted;

private:
    std::vector<ListedLoop> loops;
    int chosen = -1;
    int top = 0;
};

}  // namespace quib
