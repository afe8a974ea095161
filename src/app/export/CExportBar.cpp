// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/export/CExportBar.h"

#include <QPainter>
#include <algorithm>

#include "controls/CPalette.h"

namespace quib {

namespace {
constexpr int kMostSegments = 100;  // more would be lines only
}

CExportBar::CExportBar() { setMinimumHeight(fontMetrics().height() * 2 / 3); }

void CExportBar::SetSegments(int count) {
    segments = std::clamp(count, 1, kMostSegments);
    update();
}

void CExportBar::SetShare(double part) {
    share = std::clamp(part, 0.0, 1.0);
    update();
}

void CExportBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(Palette().Colour(QStringLiteral("wellDeep"))));
    const QColor accent(Palette().Accent(ESection::kTransport));
    painter.fillRect(QRectF(0, 0, share * width(), height()), accent);
    for (int segment = 1; segment < segments; ++segment) {
        const int x = width() * segment / segments;
        painter.fillRect(x, 0, 1, height(), QColor(Palette().Colour(QStringLiteral("panel"))));
    }
}

}  // namespace quib
