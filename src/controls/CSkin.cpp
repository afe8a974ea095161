// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CSkin.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>
#include <cmath>

namespace quib {

namespace {

QString StateName(EState state) {
    switch (state) {
        case EState::kNormal:
            return QStringLiteral("normal");
        case EState::kHover:
            return QStringLiteral("hover");
        case EState::kPressed:
            return QStringLiteral("pressed");
        case EState::kOn:
            return QStringLiteral("on");
        case EState::kOff:
            return QStringLiteral("off");
        case EState::kOnHover:
            return QStringLiteral("onHover");
        case EState::kDisabled:
            return QStringLiteral("disabled");
        case EState::kPlaying:
            return QStringLiteral("playing");
    }
    return {};
}

// The group of a state, or what stands in for it.
QString GroupOf(const QSvgRenderer& renderer, EState state) {
    QString name = StateName(state);
    if (renderer.elementExists(name)) return name;
    if (state == EState::kOnHover && renderer.elementExists(QStringLiteral("on"))) return QStringLiteral("on");
    if (renderer.elementExists(QStringLiteral("normal"))) return QStringLiteral("normal");
    return {};
}

}  // namespace

CSkin::CSkin() {
    for (const QString& name : QDir(QStringLiteral(":/skin")).entryList({QStringLiteral("*.svg")})) {
        files.insert(name.section(QLatin1Char('-'), 0, 0).toInt(), QStringLiteral(":/skin/") + name);
    }
}

CSkin::~CSkin() = default;

quint64 CSkin::Key(int number, EState state, ESection section) const noexcept {
    return static_cast<quint64>(number) << 16U | static_cast<quint64>(state) << 8U |
           static_cast<quint64>(silent ? 1 : 0) << 7U | static_cast<quint64>(section);
}

void CSkin::SetScale(qreal next) {
    if (scale == next && palette == ChosenPalette()) return;
    if (palette != ChosenPalette()) renderers.clear();
    palette = ChosenPalette();
    scale = next;
    bitmaps.clear();
    glyphs.clear();
}

const SkinBitmap& CSkin::Bitmap(int number, EState state, ESection section) {
    auto& entry = bitmaps[Key(number, state, section)];
    if (!entry) entry = std::make_shared<SkinBitmap>(Render(Renderer(number, section), state));
    return *entry;
}

const SkinBitmap& CSkin::BitmapOfSide(int number, int side, EState state, ESection section) {
    auto& entry = bitmaps[Key(number, state, section) | static_cast<quint64>(std::max(0, side)) << 32U];
    if (!entry) {
        entry = std::make_shared<SkinBitmap>(Render(Renderer(number, section), state, QSize(side, side)));
    }
    return *entry;
}

const SkinBitmap& CSkin::Glyph(int number, QRgb colour) {
    auto& entry = glyphs[static_cast<quint64>(number) << 32U | colour];
    if (!entry) {
        QByteArray source = Source(number, ESection::kMix);
        source.replace("{glyph}", QColor(colour).name().toLatin1());
        QSvgRenderer renderer;
        const bool valid = !source.isEmpty() && renderer.load(source);
        entry = std::make_shared<SkinBitmap>(Render(valid ? &renderer : nullptr, EState::kNormal));
    }
    return *entry;
}

QSize CSkin::Size(int number) {
    const QSvgRenderer* const renderer = Renderer(number, ESection::kMix);
    return renderer != nullptr ? renderer->defaultSize() : QSize(0, 0);
}

QSvgRenderer* CSkin::Renderer(int number, ESection section) {
    auto& entry = renderers[Key(number, EState::kNormal, section)];
    if (!entry) {
        entry = std::make_shared<QSvgRenderer>();
        // Loading nothing would be complained about on the terminal.
        if (const QByteArray source = Source(number, section); !source.isEmpty()) entry->load(source);
    }
    return entry->isValid() ? entry.get() : nullptr;
}

// The file with the palette's colours filled in; empty when there is none.
QByteArray CSkin::Source(int number, ESection section) const {
    QFile file(files.value(number));
    if (!files.contains(number) || !file.open(QIODevice::ReadOnly)) return {};
    return Palette().Fill(QString::fromUtf8(file.readAll()), section, silent).toUtf8();
}

SkinBitmap CSkin::Render(QSvgRenderer* renderer, EState state, QSize size) const {
    if (renderer == nullptr) return {};
    const QSize whole = renderer->defaultSize();
    if (!size.isValid()) size = whole;
    const QSize pixels(static_cast<int>(std::ceil(size.width() * scale)),
                       static_cast<int>(std::ceil(size.height() * scale)));
    SkinBitmap bitmap{QImage(pixels, QImage::Format_ARGB32_Premultiplied), size.width(), size.height()};
    bitmap.image.fill(Qt::transparent);
    QPainter painter(&bitmap.image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale * size.width() / whole.width(), scale * size.height() / whole.height());
    const QString group = GroupOf(*renderer, state);
    if (group.isEmpty()) {
        renderer->render(&painter, QRectF(QPointF(0, 0), whole));
    } else {
        const QRectF bounds = renderer->transformForElement(group).mapRect(renderer->boundsOnElement(group));
        renderer->render(&painter, group, bounds);
    }
    painter.end();
    KeyOutRed(bitmap.image);
    bitmap.image.setDevicePixelRatio(scale);
    return bitmap;
}

void CSkin::KeyOutRed(QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (line[x] == qRgb(255, 0, 0)) line[x] = 0;
        }
    }
}

}  // namespace quib
