// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The pictures of the skin: vector files of the resources, each loaded by its number and turned into a
// bitmap for the screen's scale. A file holds one group for each state of its control ("normal", "hover",
// "pressed", "on", "off", "disabled", "playing"); a state that it lacks is drawn as "normal". Pure red is
// never drawn. User-interface thread.

#include <QHash>
#include <QImage>
#include <QString>
#include <memory>

#include "controls/CPalette.h"

class QSvgRenderer;

namespace quib {

enum class EState { kNormal, kHover, kPressed, kOn, kOff, kOnHover, kDisabled, kPlaying };

// One picture at one scale. Null when there is none of its number: drawing it draws nothing.
struct SkinBitmap {
    QImage image;
    int width = 0;   // skin pixels
    int height = 0;  // skin pixels

    bool IsNull() const noexcept { return image.isNull(); }
};

class CSkin {
public:
    CSkin();
    ~CSkin();

    // Physical pixels of one skin pixel; takes over the palette that is chosen. Bitmaps that were handed out
    // before are void after a change.
    void SetScale(qreal next);
    qreal Scale() const noexcept { return scale; }
    // Pictures as of what cannot sound, until the next call.
    void SetSilent(bool next) noexcept { silent = next; }

    const SkinBitmap& Bitmap(int number, EState state = EState::kNormal, ESection section = ESection::kMix);
    // The same, `side` skin pixels wide and high: drawn in that size, not stretched.
    const SkinBitmap& BitmapOfSide(int number, int side, EState state, ESection section);
    // A picture whose shapes are "{glyph}", in that colour.
    const SkinBitmap& Glyph(int number, QRgb colour);
    // Size in skin pixels; 0 x 0 when there is no picture of that number.
    QSize Size(int number);
    QList<int> Numbers() const { return files.keys(); }

    // Makes every pure red pixel transparent.
    static void KeyOutRed(QImage& image);

private:
    QSvgRenderer* Renderer(int number, ESection section);
    SkinBitmap Render(QSvgRenderer* renderer, EState state, QSize size = {}) const;
    QByteArray Source(int number, ESection section) const;

    quint64 Key(int number, EState state, ESection section) const noexcept;

    qreal scale = 1;
    bool silent = false;
    EPalette palette = ChosenPalette();
    QHash<int, QString> files;
    QHash<quint64, std::shared_ptr<QSvgRenderer>> renderers;
    QHash<quint64, std::shared_ptr<SkinBitmap>> bitmaps;  // those of a side carry it in the upper half
    QHash<quint64, std::shared_ptr<SkinBitmap>> glyphs;
};

}  // namespace quib
