// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A row of buttons of which one is chosen, side by side in one field. User-interface thread.

#include <QButtonGroup>
#include <QStringList>
#include <QWidget>

namespace quib {

class CSegments : public QWidget {
    Q_OBJECT

public:
    explicit CSegments(const QStringList& texts);

    int Chosen() const { return group.checkedId(); }
    void Choose(int index);
    // Why a segment is off is its tip; an empty reason lets it be chosen.
    void SetOff(int index, const QString& reason);
    bool IsOff(int index) const;

Q_SIGNALS:
    void Changed(int index);

private:
    QButtonGroup group;
};

}  // namespace quib
