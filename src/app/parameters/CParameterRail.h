// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The shelves of a parameter page: a list of names with counts, one of them chosen. User-interface thread.

#include <functional>
#include <vector>

#include "controls/CControl.h"

namespace quib {

class CParameterRail : public CControl {
public:
    static constexpr int kRow = 24;

    struct Row {
        QString text;
        int count = -1;  // -1: a heading
        int glyph = -1;
        ESection section = ESection::kMix;  // of the glyph

        friend bool operator==(const Row&, const Row&) = default;
    };

    CParameterRail(CWinControl& window, const QRect& place);

    // Draws where that is something else.
    void Show(std::vector<Row> next, int chosenRow);
    const std::vector<Row>& Rows() const noexcept { return rows; }

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    ERole Role() const override { return ERole::kChoice; }
    int PartCount() const override { return static_cast<int>(rows.size()); }
    ControlPart PartAt(int part) const override;
    int ChosenPart() const override { return chosen; }
    void Activate(int part) override;

    std::function<void(int row)> onChoose;

private:
    QRectF Area(int row) const;
    int RowAt(int py) const;
    void Scroll(int firstRow);

    std::vector<Row> rows;
    int first = 0;
    int chosen = 0;
    int under = -1;
};

}  // namespace quib
