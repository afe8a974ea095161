// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The presets of an instrument, or of the whole console, as numbered cells: a click recalls one, the last
// cell adds one, the right button opens their menu, the wheel and the arrow keys step through them.
// The value is the number of the recalled preset, from 1; 0 none. User-interface thread.

#include "controls/CControl.h"

namespace quib {

class CPresetSelectorCtrl : public CControl, public CTicked {
public:
    CPresetSelectorCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                        CValue* bound);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    void OnKeyDown(int key) override;
    void Tick() override;
    void ListLearnable(std::vector<Learnable>& parts) const override;
    ERole Role() const override { return CellCount() > 0 ? ERole::kChoice : ERole::kText; }
    int PartCount() const override { return CellCount(); }
    ControlPart PartAt(int part) const override;
    int ChosenPart() const override { return static_cast<int>(ValueNow()) - 1; }
    void RevealPart(int part) override { ScrollTo(part); }
    QString SpokenValue() const override { return {}; }

    std::function<int()> presetCount;
    std::function<bool(int preset)> onSelect;      // from 0; whether it is recalled, which the value then shows
    std::function<void()> onAdd;                   // unset: none can be added
    std::function<void(int preset)> onPresetMenu;  // from 0; -1 beside the presets

private:
    int CellCount() const;
    int ShownCells() const;
    int CellAt(int px) const;
    void Select(int preset);
    void ScrollTo(int preset);

    int first = 0;  // the leftmost cell that is shown
    int hoveredCell = -1;
    int drawnCount = -1;
};

}  // namespace quib
