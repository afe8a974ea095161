// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A widget that is drawn on a canvas of the skin, in skin pixels. Keys with a letter are text for it, never
// shortcuts or notes. User-interface thread.

#include <QWidget>

#include "controls/CCanvas.h"

namespace quib {

class CSkinnedPart : public QWidget {
    Q_OBJECT

public:
    CSkinnedPart(CSkin& sharedSkin, QWidget* parent) : QWidget(parent), skin(sharedSkin) {}

    // Desktop pixels of a skin pixel.
    void SetScale(double next);
    double Scale() const noexcept { return scale; }
    QSize SkinSize() const { return (QSizeF(size()) / scale).toSize(); }
    QPoint ToSkin(const QPointF& point) const { return (point / scale).toPoint(); }

protected:
    virtual void Draw(CCanvas& canvas) = 0;
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    CSkin& Skin() noexcept { return skin; }

private:
    CSkin& skin;
    CCanvas buffer;
    double scale = 1;
};

}  // namespace quib
