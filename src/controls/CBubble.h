// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The bubble that shows a value beside its control while it moves. Lies over the window and takes no mouse.
// User-interface thread.

#include <QRgb>
#include <QTimer>
#include <QWidget>

namespace quib {

class CBubble : public QWidget {
    Q_OBJECT

public:
    explicit CBubble(QWidget& window);

    // Beside `place`, in the window's pixels; goes by itself when no other text follows for a while.
    void ShowText(const QString& newText, const QRect& place, QRgb accent, qreal uiScale);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text;
    QRgb edge = 0;
    QTimer end;
};

}  // namespace quib
