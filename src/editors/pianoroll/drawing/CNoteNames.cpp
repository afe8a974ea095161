// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/drawing/CNoteNames.h"

#include <QPainter>
#include <cmath>

#include "controls/CCanvas.h"
#include "editors/pianoroll/PianoRollView.h"

namespace quib {

const CNoteNames::Name& CNoteNames::Of(int key, qreal scale) {
    if (scale != madeFor) {
        names = {};
        madeFor = scale;
    }
    Name& name = names[static_cast<std::size_t>(key)];
    if (!name.mask.isNull()) return name;
    const QString text = QString::fromLatin1(NameOfKey(key).text);
    name.width = CCanvas::TextWidth(text, kHeight, true);
    const QSize size(static_cast<int>(std::ceil((name.width + 1) * scale)),
                     static_cast<int>(std::ceil((kHeight + 2) * scale)));
    name.mask = QImage(size, QImage::Format_ARGB32_Premultiplied);
    name.mask.fill(Qt::transparent);
    QPainter painter(&name.mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.setFont(SkinFont(kHeight, true));
    painter.setPen(Qt::white);
    painter.drawText(QRectF(0, 0, name.width + 1, kHeight + 2), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
                     text);
    return name;
}

}  // namespace quib
