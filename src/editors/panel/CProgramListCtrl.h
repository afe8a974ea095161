// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The programs of a plug-in as a list: a click or the arrow keys choose one, which is heard at once.
// User-interface thread.

#include <QStringList>
#include <functional>

#include "controls/CControl.h"

namespace quib {

class CProgramListCtrl : public CControl {
public:
    static constexpr int kRow = 24;

    CProgramListCtrl(CWinControl& window, const QRect& place, QStringList programNames);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnKeyDown(int virtualKey) override;
    void OnMouseLeave() override;

    // Shows the programs whose names hold the text.
    void SetFilter(const QString& text);
    // The one that plays; scrolls it into sight.
    void Select(int program);
    int Selected() const noexcept { return selected; }

    std::function<void(int program)> onChoose;

private:
    int RowAt(int py) const;
    int RowsInSight() const { return Height() / kRow; }
    void Scroll(int firstRow);

    QStringList names;
    std::vector<int> rows;  // programs in sight of the filter
    int first = 0;
    int selected = -1;
    int under = -1;
};

}  // namespace quib
