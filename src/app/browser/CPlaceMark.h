// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A frame over a part of a window that says: it goes there. Takes no mouse. User-interface thread.

#include <QWidget>

namespace quib {

class CPlaceMark : public QWidget {
    Q_OBJECT

public:
    explicit CPlaceMark(QWidget* parent);

    // Round a rectangle of the parent; an empty one hides it.
    void Show(const QRect& place, QRgb frameColour);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRgb colour = 0;
};

}  // namespace quib
