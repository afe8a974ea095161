// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/drawing/CMasks.h"

#include <QPainter>
#include <cmath>

#include "controls/CCanvas.h"
#include "editors/pianoroll/PianoRollView.h"

namespace quib {

namespace {

constexpr qsizetype kMostTexts = 1000;

QImage EmptyMask(double width, double height, qreal scale) {
    QImage image(static_cast<int>(std::ceil(width * scale)), static_cast<int>(std::ceil(height * scale)),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

}  // namespace

void CMasks::SetScale(qreal next) {
    if (next == scale) return;
    scale = next;
    texts.clear();
    names = {};
    flag = {};
}

TextMask CMasks::Make(const QString& text, int height, bool strong) const {
    TextMask mask;
    mask.width = CCanvas::TextWidth(text, height, strong);
    mask.height = height + 4;
    mask.image = EmptyMask(mask.width + 1, mask.height, scale);
    QPainter painter(&mask.image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.setFont(SkinFont(height, strong));
    painter.setPen(Qt::white);
    painter.drawText(QRectF(0, 0, mask.width + 1, mask.height), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
                     text);
    return mask;
}

const TextMask& CMasks::Text(const QString& text, int height, bool strong) {
    const QString key = text + QChar(height) + QChar(strong ? 'S' : 'N');
    if (const auto known = texts.constFind(key); known != texts.constEnd()) return *known;
    // A song of thousands of bars has as many names.
    if (texts.size() >= kMostTexts) texts.clear();
    return *texts.insert(key, Make(text, height, strong));
}

const TextMask& CMasks::NoteName(int key) {
    TextMask& name = names[static_cast<std::size_t>(key)];
    if (name.image.isNull()) name = Make(QString::fromLatin1(NameOfKey(key).text), kNoteName, true);
    return name;
}

const QImage& CMasks::PlayheadFlag() {
    if (!flag.isNull()) return flag;
    flag = EmptyMask(12, 10, scale);
    QPainter painter(&flag);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawPolygon(QPolygonF({{0, 0}, {12, 0}, {12, 5}, {6, 10}, {0, 5}}));
    return flag;
}

}  // namespace quib
