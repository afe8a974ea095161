// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/browser/CSkinnedPart.h"

#include <QKeyEvent>
#include <QPaintEvent>

namespace quib {

void CSkinnedPart::SetScale(double next) {
    scale = next;
    update();
}

bool CSkinnedPart::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* const key = static_cast<QKeyEvent*>(event);
        if (!key->text().isEmpty() && (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void CSkinnedPart::paintEvent(QPaintEvent* event) {
    const double physical = scale * devicePixelRatioF();
    if (skin.Scale() != physical) skin.SetScale(physical);
    buffer.Reset(QSize(static_cast<int>(std::ceil(width() / scale)), static_cast<int>(std::ceil(height() / scale))),
                 physical, Palette().Colour(QStringLiteral("panel")));
    buffer.SetClip(QRect(QPoint(0, 0), SkinSize()));
    Draw(buffer);
    QPainter painter(this);
    buffer.CopyTo(painter, event->region(), devicePixelRatioF());
}

}  // namespace quib
