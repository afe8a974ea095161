// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What controls draw on: the back buffer of their window, in skin pixels whatever the screen's scale.
// Everything outside the clip rectangle is left as it is. Rectangles, frames and pictures are put on whole
// pixels of the screen, so that they are sharp, fit together and may be drawn again over themselves.
// User-interface thread.

#include <QFont>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QRect>
#include <functional>
#include <optional>
#include <span>

#include "controls/CSkin.h"
#include "controls/PixelTile.h"
#include "controls/RoundedBox.h"

namespace quib {

// The font of the skin in a height of skin pixels.
QFont SkinFont(int height, bool strong = false);

class CCanvas {
public:
    // Replaces the back buffer by one of this size in skin pixels, filled with the colour.
    void Reset(const QSize& size, qreal scale, QRgb background);

    // Pixels outside are not touched until the next call. An empty rectangle protects everything.
    void SetClip(const QRect& rectangle);

    // Draws as of what cannot sound, until the next call.
    void SetSilent(bool next) noexcept { silent = next; }
    // What a colour becomes by that.
    QRgb Shown(QRgb colour) const noexcept { return silent ? Palette().Silent(colour) : colour; }

    void Fill(const QRectF& rectangle, QRgb wanted);
    void FillRound(const QRectF& rectangle, qreal radius, QRgb colour);
    void Frame(const QRectF& rectangle, qreal radius, QRgb colour, qreal width = 1);
    void FillVertical(const QRectF& rectangle, qreal radius, QRgb top, QRgb bottom);
    // Both in one, without a seam between them.
    void Box(const QRectF& rectangle, qreal radius, QRgb fill, QRgb edge, qreal width = 1);
    void Line(qreal x0, qreal y0, qreal x1, qreal y1, QRgb colour, qreal width = 1);
    void Polyline(std::span<const QPointF> points, QRgb colour, qreal width = 1);
    // A skin pixel wide, from left to right and without smoothing: for curves that are redrawn all the time.
    void FastPolyline(std::span<const QPointF> points, QRgb colour);
    void Polygon(std::span<const QPointF> points, QRgb colour);
    void Ellipse(const QPointF& centre, qreal radius, QRgb colour);
    // Part of a circle; angles in degrees clockwise from twelve o'clock.
    void Arc(const QPointF& centre, qreal radius, qreal from, qreal to, QRgb colour, qreal width);
    void Blit(const SkinBitmap& bitmap, qreal x, qreal y);
    // The part `source` of the bitmap, both in skin pixels.
    void Blit(const SkinBitmap& bitmap, qreal x, qreal y, const QRectF& source);
    // Turned clockwise about its centre, which comes to lie at `centre`.
    void BlitTurned(const SkinBitmap& bitmap, const QPointF& centre, qreal degrees);
    // The bitmap stretched along the longer side of `target`; `cap` pixels at each of its ends are not.
    void BlitStretched(const SkinBitmap& bitmap, const QRectF& target, qreal cap);
    // A glyph of the skin in a colour.
    void Glyph(CSkin& skin, int number, const QPointF& centre, QRgb colour);
    // One line, shortened with an ellipsis where it does not fit.
    void Text(const QRectF& rectangle, const QString& text, QRgb colour, int height = 10,
              Qt::Alignment alignment = Qt::AlignCenter, bool strong = false);
    // One line whose digits are all as wide as the widest, for numbers that run; never shortened.
    void Digits(const QRectF& rectangle, const QString& text, QRgb colour, int height, Qt::Alignment alignment,
                bool strong = false);
    static qreal DigitsWidth(const QString& text, int height, bool strong = false);
    // Wrapped at words; gives the height that the text takes.
    qreal Paragraph(const QRectF& rectangle, const QString& text, QRgb colour, int height);
    static qreal TextWidth(const QString& text, int height, bool strong = false);

    // The same line of pixels of the back buffer in every row of the rectangle, from its left edge on. Nothing
    // where the rectangle is wider than the line.
    void FillLines(const QRectF& rectangle, std::span<const QRgb> line);
    // Lets `draw` draw every pixel of a part of the back buffer that the clip leaves, piece by piece. The part is in
    // pixels of the screen, the tiles count from its corner.
    void DrawTiles(const QRect& part, const std::function<void(const PixelTile& tile)>& draw);
    // The opacity of a picture, its upper left corner at that place, in a colour. Premultiplied 32 bits a pixel.
    void Mask(const QImage& mask, qreal x, qreal y, QRgb colour);

    // The picture so far. Drawing goes on afterwards.
    const QImage& Image();
    // Copies a region of a widget, in its own pixels of `ratio` screen pixels each, to that widget's painter.
    void CopyTo(QPainter& target, const QRegion& region, qreal ratio);
    // What a part fills of a widget, in its own pixels: none that another part shares.
    QRect WidgetPart(const QRect& area, qreal ratio) const noexcept;
    // The pixels of a part, which lies within the picture, and such a part put back whatever the clip.
    QImage Copied(const QRect& area) const { return image.copy(Pixels(area)); }
    void PutBack(const QImage& pixels, const QRect& area);
    // Lets `draw` draw a region of a widget anew, rectangle by rectangle in skin pixels: straight to what the painter
    // paints on where that is a picture, so that nothing is copied. The back buffer is left as it is then.
    void DrawTo(QPainter& target, const QRegion& region, qreal ratio,
                const std::function<void(const QRect& area)>& draw);
    // Moves a part of the picture by whole skin pixels and says whether that could be done exactly.
    bool Scroll(const QRect& area, int dx, int dy);

    qreal Scale() const noexcept { return scale; }

    // Told of each text that does not fit its room.
    std::function<void(const QString& text, const QRectF& room)> onCut;

private:
    QPainter& Painter();
    // The nearest pixels of the back buffer.
    QRect Pixels(const QRectF& rectangle) const noexcept;
    QRectF OnPixels(const QRectF& rectangle) const noexcept;
    qreal OnPixel(qreal place) const noexcept;
    // A width of whole pixels, one at the least.
    qreal LineWidth(qreal width) const noexcept;
    void Rounded(const QRectF& rectangle, RoundedBox box);
    void FillPassed(const QPointF& from, const QPointF& to, int wide, QRgb colour);
    const QImage& LetterMask(QChar letter, const QSizeF& room, int height, bool strong);
    // As if the canvas were those pixels, within that part of them.
    void DrawOn(QImage& pixels, const QRect& part, const std::function<void()>& draw);

    QImage image;
    QPainter painter;
    QRect clip;                        // skin pixels
    QRect clipPixels;                  // pixels of the back buffer
    std::optional<QRect> painterClip;  // what the painter has been told: most pixels are drawn without it
    QRect limit;  // pixels: the part beside which nothing is drawn while another picture is drawn on
    qreal scale = 1;
    bool silent = false;
    QHash<quint64, QImage> letters;  // opacity of those of numbers that run
};

}  // namespace quib
