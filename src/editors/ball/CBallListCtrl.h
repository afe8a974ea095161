// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The balls by number and what each does by itself; three are seen at once. User-interface thread.

#include <QStringList>

#include "controls/CControl.h"

namespace quib {

class CBallListCtrl : public CControl {
public:
    static constexpr int kRow = 28;

    CBallListCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth);

    void Show(const QStringList& next, int selectedBall);
    void Draw() override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    ERole Role() const override { return states.empty() ? ERole::kNone : ERole::kChoice; }
    int PartCount() const override { return static_cast<int>(states.size()); }
    ControlPart PartAt(int part) const override;
    int ChosenPart() const override { return selected; }
    void RevealPart(int part) override;

    std::function<void(int ball)> onSelect;

private:
    static constexpr int kRows = 3;

    QStringList states;
    int selected = -1;
    int first = 0;
};

}  // namespace quib
