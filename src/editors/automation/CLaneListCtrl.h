// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The list of lanes beside the curve: headings and lanes, those with points marked. User-interface thread.

#include "controls/CControl.h"
#include "editors/automation/CLaneCatalog.h"

namespace quib {

class CLaneListCtrl : public CControl {
public:
    static constexpr int kRow = 24;

    struct Row {
        QString text;
        QString right;               // a count or a value
        std::optional<LaneKey> key;  // none: a heading
        bool used = false;
    };

    CLaneListCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    void Resize(int newWidth, int newHeight) override;
    ERole Role() const override { return rows.empty() ? ERole::kNone : ERole::kChoice; }
    int PartCount() const override { return static_cast<int>(rows.size()); }
    ControlPart PartAt(int part) const override;
    int ChosenPart() const override;
    void RevealPart(int part) override;

    void Show(std::vector<Row> next, const std::optional<LaneKey>& selected);
    // Skin pixels of the rows above the first one shown.
    void ScrollTo(int pixels);
    int Scroll() const noexcept { return scroll; }
    int WholeHeight() const noexcept { return static_cast<int>(rows.size()) * kRow; }

    std::function<void(const LaneKey&)> onChoose;
    std::function<void()> onScroll;

private:
    int RowAt(int py) const;
    void DrawRow(const Row& row, int top, bool lit);

    std::vector<Row> rows;
    std::optional<LaneKey> chosen;
    int scroll = 0;
    int litRow = -1;
};

}  // namespace quib
