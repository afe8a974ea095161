// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/browser/CPlaceMark.h"

#include <QPainter>

namespace quib {

namespace {
constexpr int kWidth = 2;  // pixels of the frame
}

CPlaceMark::CPlaceMark(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void CPlaceMark::Show(const QRect& place, QRgb frameColour) {
    colour = frameColour;
    setGeometry(place.adjusted(-1, -1, 1, 1));
    setVisible(!place.isEmpty());
    raise();
    update();
}

void CPlaceMark::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(colour), kWidth));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 3, 3);
}

}  // namespace quib
