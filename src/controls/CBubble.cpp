// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CBubble.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "controls/CCanvas.h"
#include "controls/CPalette.h"

namespace quib {

namespace {
constexpr int kShownTime = 900;  // milliseconds after the last text
constexpr int kTextHeight = 11;  // skin pixels
}  // namespace

CBubble::CBubble(QWidget& window) : QWidget(&window) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    end.setSingleShot(true);
    connect(&end, &QTimer::timeout, this, &QWidget::hide);
}

void CBubble::ShowText(const QString& newText, const QRect& place, QRgb accent, qreal uiScale) {
    text = newText;
    edge = accent;
    setFont(SkinFont(static_cast<int>(std::lround(kTextHeight * uiScale)), true));
    const QFontMetrics metrics(font());
    resize(metrics.horizontalAdvance(text) + static_cast<int>(14 * uiScale),
           metrics.height() + static_cast<int>(5 * uiScale));
    const QRect window = parentWidget()->rect();
    const int left = std::clamp(place.center().x() - width() / 2, 0, std::max(0, window.width() - width()));
    const int above = place.top() - height() - 4;
    move(left, above >= 0 ? above : place.bottom() + 5);
    show();
    raise();
    update();
    end.start(kShownTime);
}

void CBubble::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(edge));
    painter.setBrush(QColor(Palette().Colour(QStringLiteral("wellDeep"))));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    painter.setPen(QColor(Palette().Colour(QStringLiteral("text"))));
    painter.drawText(rect(), Qt::AlignCenter, text);
}

}  // namespace quib
