// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The programs of a plug-in as a list, those of the user's below them under a heading: a click or the arrow keys choose
// one, which is heard at once. User-interface thread.

#include <QStringList>
#include <functional>

#include "controls/CControl.h"

namespace quib {

class CProgramListCtrl : public CControl {
public:
    static constexpr int kRow = 24;

    CProgramListCtrl(CWinControl& window, const QRect& place, QStringList programNames, QStringList userNames = {});

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnKeyDown(int virtualKey) override;
    void OnMouseLeave() override;

    // Shows the programs whose names hold the text and which `isWanted` wants; unset: all.
    void SetFilter(const QString& text);
    std::function<bool(const QString& name)> isWanted;
    bool showsOwn = true;   // those of the plug-in
    bool showsUser = true;  // those of the user
    // The one that plays; scrolls it into sight.
    void Select(int program);
    int Selected() const noexcept { return selected; }

    std::function<void(int program)> onChoose;
    std::function<void(int index)> onChooseUser;

private:
    int RowAt(int py) const;
    int RowsInSight() const { return Height() / kRow; }
    void Scroll(int firstRow);

    static constexpr int kHeading = -1;
    // Rows of the user's programs count down from here.
    static constexpr int kFirstUser = -2;

    void Choose(int row);
    QString NameOf(int row) const;

    QStringList names;
    QStringList user;
    std::vector<int> rows;  // programs in sight of the filter, the heading, programs of the user's
    int first = 0;
    int selected = -1;
    int under = -1;
};

}  // namespace quib
