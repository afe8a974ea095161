// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The list of what follows the selected ball: axis, parameter, a bar with the lowest and the highest value, and
// the value now. User-interface thread.

#include <vector>

#include "controls/CControl.h"

namespace quib {

class CBallAssignmentsCtrl : public CControl {
public:
    static constexpr int kRow = 26;

    struct Row {
        int axis = 0;
        int assignment = 0;  // index on its axis
        QString name;
        QString range;  // the values at both ends
        float low = 0;  // 0..1
        float high = 1;
        float now = -1;  // 0..1; below 0: not known
    };

    CBallAssignmentsCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight);

    void Show(std::vector<Row> next);
    // The values now, in the order of the rows.
    void ShowValues(const std::vector<float>& values);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void Resize(int newWidth, int newHeight) override { SetSize(newWidth, newHeight); }

    QRgb colour = 0;  // of the ball
    QString hint;     // a line under the rows; empty: none
    std::function<void(const Row&)> onOtherAxis;
    std::function<void(const Row&)> onRemove;
    std::function<void(const Row&, float low, float high)> onSpan;  // 0..1, while it is dragged
    std::function<void()> onSpanDone;

private:
    enum class EPart { kNone, kLow, kHigh };
    int RowAt(int py) const;
    void DrawRow(const Row& row, int top);
    double BarX(float share) const;

    std::vector<Row> rows;
    int first = 0;  // row that is shown on top
    int dragged = -1;
    EPart part = EPart::kNone;
};

}  // namespace quib
