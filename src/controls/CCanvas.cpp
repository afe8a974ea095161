// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CCanvas.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPaintEngine>
#include <QPainterPath>
#include <QTextLayout>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <optional>

#include "controls/SmoothGraph.h"

namespace quib {

namespace {

constexpr int kKeptFonts = 96;
constexpr qsizetype kKeptWidths = 2000;  // of one font
constexpr qsizetype kKeptLines = 500;    // of one font
constexpr int kKeptLetters = 128;

struct KeptFont {
    QFont font;
    QHash<QString, qreal> widths;  // of texts that were drawn, so that they are not measured again
    // Lines that were drawn, their letters found and placed: that takes longer than drawing them.
    QHash<QString, std::shared_ptr<QTextLayout>> lines;
    std::array<qreal, kKeptLetters> letterWidths{};  // 0: not measured yet
};
// Those of the usual heights, of the user-interface thread.
std::array<std::optional<KeptFont>, std::size_t{2} * kKeptFonts> keptFonts;

std::optional<KeptFont>* KeptPlace(int height, bool strong) {
    if (height >= kKeptFonts) return nullptr;
    return &keptFonts[static_cast<std::size_t>(std::max(height, 0)) * 2 + (strong ? 1 : 0)];
}

QString LoadFontFamily() {
    QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/Inter-SemiBold.otf"));
    const int font = QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/Inter-Medium.otf"));
    const QStringList families = QFontDatabase::applicationFontFamilies(font);
    return families.isEmpty() ? QStringLiteral("Sans Serif") : families.first();
}

// The picture that a painter paints into when pixels may be copied there one by one. A painter whose clip
// is made of many rectangles takes several times as long, on all processors.
QImage* CopyTarget(const QPainter& painter, qreal ratio) {
    QPaintDevice* const device = painter.paintEngine()->paintDevice();
    const QTransform transform = painter.deviceTransform();
    const bool isPlain =
        transform.type() <= QTransform::TxScale && transform.m11() == ratio && transform.m22() == ratio;
    if (!isPlain || device == nullptr || device->devType() != QInternal::Image) return nullptr;
    auto* const image = static_cast<QImage*>(device);
    const QImage::Format format = image->format();
    return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32_Premultiplied ? image : nullptr;
}

void CopyPixels(const QImage& from, const QRect& area, QImage& to, const QPoint& offset) {
    const QRect part = area.intersected(from.rect()).intersected(to.rect().translated(-offset));
    if (part.isEmpty()) return;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const auto* const source = reinterpret_cast<const QRgb*>(from.constScanLine(y)) + part.left();
        auto* const line = reinterpret_cast<QRgb*>(to.scanLine(y + offset.y())) + part.left() + offset.x();
        std::copy_n(source, part.width(), line);
    }
}

std::shared_ptr<QTextLayout> LaidOut(const QString& text, const QFont& font) {
    constexpr qreal kEndless = 0x1000000;  // pixels
    auto layout = std::make_shared<QTextLayout>(QString(text).replace(QLatin1Char('\n'), QLatin1Char(' ')), font);
    layout->setCacheEnabled(true);
    layout->beginLayout();
    layout->createLine().setLineWidth(kEndless);
    layout->endLayout();
    return layout;
}

std::shared_ptr<QTextLayout> LineOf(const QString& text, int height, bool strong) {
    const QFont font = SkinFont(height, strong);
    std::optional<KeptFont>* const kept = KeptPlace(height, strong);
    if (kept == nullptr) return LaidOut(text, font);
    QHash<QString, std::shared_ptr<QTextLayout>>& lines = (*kept)->lines;
    if (const auto known = lines.constFind(text); known != lines.constEnd()) return *known;
    if (lines.size() >= kKeptLines) lines.clear();
    return *lines.insert(text, LaidOut(text, font));
}

// Where a line begins for its letters to stand in a rectangle as they are to.
QPointF PlaceOf(const QTextLine& line, const QRectF& room, Qt::Alignment alignment) {
    const qreal high = line.ascent() + line.descent();
    const qreal wide = line.horizontalAdvance();
    const qreal down = (alignment & Qt::AlignBottom) != 0    ? room.height() - high
                       : (alignment & Qt::AlignVCenter) != 0 ? (room.height() - high) / 2
                                                             : 0;
    const qreal right = (alignment & Qt::AlignRight) != 0     ? room.width() - wide
                        : (alignment & Qt::AlignHCenter) != 0 ? (room.width() - wide) / 2
                                                              : 0;
    return room.topLeft() + QPointF(right, down);
}

qreal LetterWidth(QChar letter, int height, bool strong) {
    const ushort code = letter.unicode();
    std::optional<KeptFont>* const kept = KeptPlace(height, strong);
    if (code >= kKeptLetters || kept == nullptr || !*kept) return CCanvas::TextWidth(letter, height, strong);
    qreal& width = (*kept)->letterWidths[code];
    if (width == 0) width = CCanvas::TextWidth(letter, height, strong);
    return width;
}

QRgb Over(QRgb under, QRgb colour, int alpha) noexcept {
    const auto mix = [alpha](int from, int to) { return from + (to - from) * alpha / 255; };
    return qRgb(mix(qRed(under), qRed(colour)), mix(qGreen(under), qGreen(colour)), mix(qBlue(under), qBlue(colour)));
}

// Such as the painter takes long for: of many points, each right of the one before.
bool IsGraph(std::span<const QPointF> points) {
    constexpr std::size_t kFew = 16;
    return points.size() >= kFew && std::ranges::is_sorted(points, {}, &QPointF::x);
}

}  // namespace

QFont SkinFont(int height, bool strong) {
    static const QString family = LoadFontFamily();  // a constant of the program
    // A font that is there already knows its letters' shapes.
    std::optional<KeptFont>* const kept = KeptPlace(height, strong);
    if (kept != nullptr && *kept) return (*kept)->font;
    QFont font(family);
    font.setPixelSize(height);
    font.setWeight(strong ? QFont::DemiBold : QFont::Medium);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::NoSubpixelAntialias);
    if (kept != nullptr) kept->emplace().font = font;
    return font;
}

void CCanvas::Reset(const QSize& size, qreal newScale, QRgb background) {
    if (painter.isActive()) painter.end();
    if (scale != newScale) letters.clear();
    scale = newScale;
    const QSize pixels(std::max(1, static_cast<int>(std::ceil(size.width() * scale))),
                       std::max(1, static_cast<int>(std::ceil(size.height() * scale))));
    if (image.size() != pixels) image = QImage(pixels, QImage::Format_RGB32);
    image.fill(background);
    clip = {};
    SetClip(QRect(QPoint(0, 0), size));
}

QPainter& CCanvas::Painter() {
    if (!painter.isActive()) {
        painter.begin(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        SetPainterClip();
    }
    return painter;
}

void CCanvas::SetPainterClip() {
    painter.resetTransform();
    painter.setClipRect(clipPixels);
    painter.scale(scale, scale);
}

void CCanvas::FillLines(const QRectF& rectangle, std::span<const QRgb> line) {
    const QRect whole = Pixels(rectangle);
    const QRect area =
        whole.intersected(clipPixels).intersected(QRect(whole.topLeft(), QSize(int(line.size()), whole.height())));
    if (area.isEmpty()) return;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        auto* const target = reinterpret_cast<QRgb*>(image.scanLine(y)) + area.left();
        std::copy_n(line.data() + (area.left() - whole.left()), area.width(), target);
    }
}

void CCanvas::Mask(const QImage& mask, qreal x, qreal y, QRgb colour) {
    const QPoint corner = Pixels({x, y, 1, 1}).topLeft();
    const QRect area = QRect(corner, mask.size()).intersected(clipPixels);
    for (int line = area.top(); line <= area.bottom(); ++line) {
        const auto* const source = reinterpret_cast<const QRgb*>(mask.constScanLine(line - corner.y()));
        auto* const target = reinterpret_cast<QRgb*>(image.scanLine(line));
        for (int column = area.left(); column <= area.right(); ++column) {
            const int alpha = qAlpha(source[column - corner.x()]);
            if (alpha == 0) continue;
            target[column] = Over(target[column], colour, alpha);
        }
    }
}

const QImage& CCanvas::Image() {
    if (painter.isActive()) painter.end();
    return image;
}

void CCanvas::SetClip(const QRect& rectangle) {
    if (clip == rectangle) return;
    clip = rectangle;
    clipPixels = Pixels(rectangle).intersected(limit.isNull() ? image.rect() : limit);
    if (painter.isActive()) SetPainterClip();
}

QRect CCanvas::Pixels(const QRectF& rectangle) const noexcept {
    // As std::lround, which is a call each.
    const auto pixel = [this](qreal place) { return static_cast<int>(place * scale + std::copysign(0.5, place)); };
    const QPoint first(pixel(rectangle.left()), pixel(rectangle.top()));
    return {first, QPoint(pixel(rectangle.right()) - 1, pixel(rectangle.bottom()) - 1)};
}

qreal CCanvas::OnPixel(qreal place) const noexcept { return std::round(place * scale) / scale; }

QRectF CCanvas::OnPixels(const QRectF& rectangle) const noexcept {
    return {QPointF(OnPixel(rectangle.left()), OnPixel(rectangle.top())),
            QPointF(OnPixel(rectangle.right()), OnPixel(rectangle.bottom()))};
}

qreal CCanvas::LineWidth(qreal width) const noexcept { return std::max(1.0, std::ceil(width * scale - 0.5)) / scale; }

void CCanvas::Fill(const QRectF& rectangle, QRgb wanted) {
    const QRgb colour = Shown(wanted);
    const QRect area = Pixels(rectangle).intersected(clipPixels);
    if (area.isEmpty()) return;
    // Many times faster than the painter, which writes to the same memory at once.
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(area.top())) + area.left();
    const qsizetype pitch = image.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
    for (int y = area.top(); y <= area.bottom(); ++y, line += pitch) {
        if (qAlpha(colour) == 255) {
            std::fill_n(line, area.width(), colour);
        } else {
            for (int x = 0; x < area.width(); ++x) line[x] = Over(line[x], colour, qAlpha(colour));
        }
    }
}

// Straight into the picture, as plain filling is.
void CCanvas::Rounded(const QRectF& rectangle, RoundedBox box) {
    box.radius *= scale;
    DrawRoundedBox(image, clipPixels, Pixels(rectangle), box);
}

void CCanvas::FillRound(const QRectF& rectangle, qreal radius, QRgb wanted) {
    const QRgb colour = Shown(wanted);
    if (qAlpha(colour) == 255) return Rounded(rectangle, {radius, 0, 0, true, colour, colour});
    Painter().setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgba(colour));
    painter.drawRoundedRect(OnPixels(rectangle), radius, radius);
}

void CCanvas::FillVertical(const QRectF& rectangle, qreal radius, QRgb top, QRgb bottom) {
    Rounded(rectangle, {radius, 0, 0, true, Shown(top), Shown(bottom)});
}

void CCanvas::Frame(const QRectF& rectangle, qreal radius, QRgb colour, qreal width) {
    const QRgb edge = Shown(colour);
    const int pixels = qRound(LineWidth(width) * scale);
    if (qAlpha(edge) == 255) return Rounded(rectangle, {radius, pixels, edge, false, 0, 0});
    const qreal whole = LineWidth(width);
    const qreal inset = whole / 2;
    const qreal within = std::max(0.0, radius - inset);
    Painter().setPen(QPen(QColor::fromRgba(edge), whole, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(OnPixels(rectangle).adjusted(inset, inset, -inset, -inset), within, within);
}

void CCanvas::Box(const QRectF& rectangle, qreal radius, QRgb fill, QRgb edge, qreal width) {
    if (qAlpha(fill) == 255 && qAlpha(edge) == 255) {
        const QRgb inner = Shown(fill);
        return Rounded(rectangle, {radius, qRound(LineWidth(width) * scale), Shown(edge), true, inner, inner});
    }
    FillRound(rectangle, radius, fill);
    Frame(rectangle, radius, edge, width);
}

void CCanvas::Line(qreal x0, qreal y0, qreal x1, qreal y1, QRgb colour, qreal width) {
    const qreal whole = LineWidth(width);
    if (y0 == y1) return Fill({x0, OnPixel(y0 - whole / 2), x1 - x0, whole}, colour);
    if (x0 == x1) return Fill({OnPixel(x0 - whole / 2), y0, whole, y1 - y0}, colour);
    Painter().setPen(QPen(QColor::fromRgba(Shown(colour)), whole, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(x0, y0), QPointF(x1, y1));
}

void CCanvas::Polyline(std::span<const QPointF> points, QRgb colour, qreal width) {
    if (IsGraph(points)) return DrawGraph(image, clipPixels, {points, scale, width * scale, Shown(colour)});
    Painter().setPen(QPen(QColor::fromRgba(Shown(colour)), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(points.data(), static_cast<int>(points.size()));
}

// In each column of pixels, what the line passes there.
void CCanvas::FastPolyline(std::span<const QPointF> points, QRgb wanted) {
    const QRgb colour = Shown(wanted);
    const int wide = qRound(LineWidth(1) * scale);
    QPointF from;
    for (std::size_t index = 0; index < points.size(); ++index) {
        const QPointF to = points[index] * scale;
        if (index > 0) FillPassed(from, to, wide, colour);
        from = to;
    }
}

void CCanvas::FillPassed(const QPointF& from, const QPointF& to, int wide, QRgb colour) {
    const qreal slope = to.x() > from.x() ? (to.y() - from.y()) / (to.x() - from.x()) : 0;
    auto* const pixels = reinterpret_cast<QRgb*>(image.scanLine(0));
    const qsizetype pitch = image.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
    const int first = static_cast<int>(std::floor(from.x()));
    const int last = std::max(first, static_cast<int>(std::ceil(to.x())) - 1);
    for (int column = std::max(first, clipPixels.left()); column <= std::min(last, clipPixels.right()); ++column) {
        const qreal begin = from.y() + slope * (std::max<qreal>(column, from.x()) - from.x());
        const qreal end = column == last ? to.y() : from.y() + slope * (column + 1 - from.x());
        const int top = std::max(static_cast<int>(std::floor(std::min(begin, end))), clipPixels.top());
        const int bottom = std::min(static_cast<int>(std::floor(std::max(begin, end))) + wide - 1, clipPixels.bottom());
        for (int y = top; y <= bottom; ++y) pixels[y * pitch + column] = colour;
    }
}

void CCanvas::Polygon(std::span<const QPointF> points, QRgb colour) {
    Painter().setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgba(Shown(colour)));
    painter.drawPolygon(points.data(), static_cast<int>(points.size()));
}

void CCanvas::Ellipse(const QPointF& centre, qreal radius, QRgb colour) {
    Painter().setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgba(Shown(colour)));
    painter.drawEllipse(centre, radius, radius);
}

void CCanvas::Arc(const QPointF& centre, qreal radius, qreal from, qreal to, QRgb colour, qreal width) {
    QPainterPath path;
    const QRectF bounds(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    path.arcMoveTo(bounds, 90 - from);
    path.arcTo(bounds, 90 - from, from - to);
    Painter().strokePath(path, QPen(QColor::fromRgba(Shown(colour)), width, Qt::SolidLine, Qt::RoundCap));
}

void CCanvas::Blit(const SkinBitmap& bitmap, qreal x, qreal y) {
    if (!bitmap.IsNull()) Painter().drawImage(QPointF(OnPixel(x), OnPixel(y)), bitmap.image);
}

void CCanvas::Blit(const SkinBitmap& bitmap, qreal x, qreal y, const QRectF& source) {
    if (bitmap.IsNull() || source.isEmpty()) return;
    const QRectF pixels = Pixels(source);
    Painter().drawImage(QRectF(QPointF(OnPixel(x), OnPixel(y)), pixels.size() / scale), bitmap.image, pixels);
}

void CCanvas::BlitTurned(const SkinBitmap& bitmap, const QPointF& centre, qreal degrees) {
    if (bitmap.IsNull()) return;
    Painter().save();
    painter.translate(centre);
    painter.rotate(degrees);
    painter.drawImage(QPointF(-bitmap.width / 2.0, -bitmap.height / 2.0), bitmap.image);
    painter.restore();
}

void CCanvas::BlitStretched(const SkinBitmap& bitmap, const QRectF& wanted, qreal cap) {
    const QRectF target = OnPixels(wanted);
    if (bitmap.IsNull() || target.isEmpty()) return;
    const bool upright = bitmap.height > bitmap.width || target.height() > target.width();
    const qreal whole = upright ? bitmap.image.height() : bitmap.image.width();
    const qreal length = upright ? target.height() : target.width();
    const qreal end = std::min(OnPixel(cap), length / 2);
    const std::array<qreal, 4> from = {0, end * scale, whole - end * scale, whole};
    const std::array<qreal, 4> to = {0, end, length - end, length};
    for (std::size_t part = 0; part + 1 < from.size(); ++part) {
        const qreal sourceLength = from[part + 1] - from[part];
        const qreal targetLength = to[part + 1] - to[part];
        if (sourceLength <= 0 || targetLength <= 0) continue;
        const QRectF source = upright ? QRectF(0, from[part], bitmap.image.width(), sourceLength)
                                      : QRectF(from[part], 0, sourceLength, bitmap.image.height());
        const QRectF place = upright ? QRectF(target.left(), target.top() + to[part], target.width(), targetLength)
                                     : QRectF(target.left() + to[part], target.top(), targetLength, target.height());
        Painter().drawImage(place, bitmap.image, source);
    }
}

void CCanvas::Glyph(CSkin& skin, int number, const QPointF& centre, QRgb colour) {
    const SkinBitmap& bitmap = skin.Glyph(number, Shown(colour));
    Blit(bitmap, centre.x() - bitmap.width / 2.0, centre.y() - bitmap.height / 2.0);
}

void CCanvas::Text(const QRectF& rectangle, const QString& text, QRgb colour, int height, Qt::Alignment alignment,
                   bool strong) {
    if (text.isEmpty()) return;
    const bool fits = TextWidth(text, height, strong) <= rectangle.width() + 0.5;
    if (!fits && onCut) onCut(text, rectangle);
    const auto layout = LineOf(
        fits ? text : QFontMetricsF(SkinFont(height, strong)).elidedText(text, Qt::ElideRight, rectangle.width()),
        height, strong);
    const QTextLine line = layout->lineAt(0);
    if (!line.isValid()) return;
    Painter().setPen(QColor::fromRgba(Shown(colour)));
    line.draw(&painter, PlaceOf(line, rectangle, alignment));
}

void CCanvas::Digits(const QRectF& rectangle, const QString& text, QRgb colour, int height, Qt::Alignment alignment,
                     bool strong) {
    const qreal whole = DigitsWidth(text, height, strong);
    if (whole > rectangle.width() + 0.5 && onCut) onCut(text, rectangle);
    qreal left = (alignment & Qt::AlignRight) != 0     ? rectangle.right() - whole
                 : (alignment & Qt::AlignHCenter) != 0 ? rectangle.center().x() - whole / 2
                                                       : rectangle.left();
    left = std::round(left);
    for (const QChar letter : text) {
        const QSizeF room(DigitsWidth(letter, height, strong), rectangle.height());
        Mask(LetterMask(letter, room, height, strong), left, rectangle.top(), Shown(colour));
        left += room.width();
    }
}

// A letter in the middle of its room. Numbers that run have few, and are drawn all the time.
const QImage& CCanvas::LetterMask(QChar letter, const QSizeF& room, int height, bool strong) {
    const quint64 key = static_cast<quint64>(letter.unicode()) << 32U | static_cast<quint64>(height) << 16U |
                        static_cast<quint64>(qRound(room.height())) << 1U | (strong ? 1U : 0U);
    QImage& mask = letters[key];
    if (!mask.isNull()) return mask;
    const QSizeF pixels = room * scale;
    mask = QImage(std::max(1, static_cast<int>(std::ceil(pixels.width()))),
                  std::max(1, static_cast<int>(std::ceil(pixels.height()))), QImage::Format_ARGB32_Premultiplied);
    mask.fill(Qt::transparent);
    QPainter letterPainter(&mask);
    letterPainter.scale(scale, scale);
    letterPainter.setFont(SkinFont(height, strong));
    letterPainter.setPen(Qt::white);
    letterPainter.drawText(QRectF(QPointF(0, 0), room), Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip,
                           QString(letter));
    return mask;
}

qreal CCanvas::DigitsWidth(const QString& text, int height, bool strong) {
    const qreal digit = std::ceil(LetterWidth(QLatin1Char('0'), height, strong));
    qreal width = 0;
    for (const QChar letter : text) width += letter.isDigit() ? digit : LetterWidth(letter, height, strong);
    return width;
}

qreal CCanvas::Paragraph(const QRectF& rectangle, const QString& text, QRgb colour, int height) {
    Painter().setFont(SkinFont(height));
    painter.setPen(QColor::fromRgba(Shown(colour)));
    QRectF taken;
    painter.drawText(rectangle, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, text, &taken);
    return taken.height();
}

qreal CCanvas::TextWidth(const QString& text, int height, bool strong) {
    const QFont font = SkinFont(height, strong);
    std::optional<KeptFont>* const kept = KeptPlace(height, strong);
    if (kept == nullptr) return QFontMetricsF(font).horizontalAdvance(text);
    QHash<QString, qreal>& widths = (*kept)->widths;
    if (const auto known = widths.constFind(text); known != widths.constEnd()) return *known;
    if (widths.size() >= kKeptWidths) widths.clear();
    return *widths.insert(text, QFontMetricsF(font).horizontalAdvance(text));
}

void CCanvas::CopyTo(QPainter& target, const QRegion& region, qreal ratio) {
    QImage* const pixels = CopyTarget(target, ratio);
    // A painter may go on while pixels are read one by one.
    if (pixels == nullptr) Image();
    const QPoint offset = target.deviceTransform().map(QPointF(0, 0)).toPoint();
    for (const QRect& part : region) {
        const QRectF source(part.x() * ratio, part.y() * ratio, part.width() * ratio, part.height() * ratio);
        if (pixels != nullptr) {
            CopyPixels(image, source.toAlignedRect(), *pixels, offset);
        } else {
            target.drawImage(QRectF(part), image, source);
        }
    }
}

QRect CCanvas::WidgetPart(const QRect& area, qreal ratio) const noexcept {
    const QRect pixels = Pixels(area);
    const auto from = [&](int pixel) { return static_cast<int>(std::ceil(pixel / ratio)); };
    const auto to = [&](int pixel) { return static_cast<int>(std::floor((pixel + 1) / ratio)) - 1; };
    return {QPoint(from(pixels.left()), from(pixels.top())), QPoint(to(pixels.right()), to(pixels.bottom()))};
}

void CCanvas::PutBack(const QImage& pixels, const QRect& area) {
    const QPoint corner = Pixels(area).topLeft();
    const QRect target = QRect(corner, pixels.size()).intersected(QRect(QPoint(0, 0), image.size()));
    const auto bytes = static_cast<std::size_t>(std::max(0, target.width())) * 4;
    for (int y = target.top(); y <= target.bottom(); ++y) {
        const auto* const source = reinterpret_cast<const QRgb*>(pixels.constScanLine(y - corner.y()));
        std::memcpy(reinterpret_cast<QRgb*>(image.scanLine(y)) + target.x(), source + target.x() - corner.x(), bytes);
    }
}

void CCanvas::DrawTo(QPainter& target, const QRegion& region, qreal ratio,
                     const std::function<void(const QRect& area)>& draw) {
    QImage* const pixels = CopyTarget(target, ratio);
    const QPoint offset = target.deviceTransform().map(QPointF(0, 0)).toPoint();
    const bool isDirect = pixels != nullptr && offset.x() >= 0 && offset.y() >= 0;
    QImage shown;
    if (isDirect) {
        uchar* const corner = pixels->scanLine(offset.y()) + offset.x() * static_cast<qsizetype>(sizeof(QRgb));
        shown = QImage(corner, std::min(image.width(), pixels->width() - offset.x()),
                       std::min(image.height(), pixels->height() - offset.y()), pixels->bytesPerLine(),
                       QImage::Format_RGB32);
    }
    for (const QRect& part : region) {
        const QRect taken =
            QRectF(part.x() * ratio, part.y() * ratio, part.width() * ratio, part.height() * ratio).toAlignedRect();
        const QRectF area(taken.x() / scale, taken.y() / scale, taken.width() / scale, taken.height() / scale);
        if (isDirect) {
            DrawOn(shown, taken.intersected(shown.rect()), [&] { draw(area.toAlignedRect()); });
        } else {
            draw(area.toAlignedRect());
        }
    }
    if (!isDirect) CopyTo(target, region, ratio);
}

void CCanvas::DrawOn(QImage& pixels, const QRect& part, const std::function<void()>& draw) {
    if (part.isEmpty()) return;
    const auto exchange = [&](const QRect& next) {
        if (painter.isActive()) painter.end();
        std::swap(image, pixels);
        limit = next;
        clip = {};
        clipPixels = {};
    };
    exchange(part);
    draw();
    exchange({});
}

bool CCanvas::Scroll(const QRect& area, int dx, int dy) {
    const auto exact = [this](int value) { return value * scale == std::floor(value * scale); };
    if (!exact(dx) || !exact(dy) || !exact(area.x()) || !exact(area.y())) return false;
    if (painter.isActive()) painter.end();
    const auto pixel = [this](int value) { return static_cast<int>(value * scale); };
    const QRect whole = QRect(pixel(area.x()), pixel(area.y()), pixel(area.width()), pixel(area.height()))
                            .intersected(QRect(QPoint(0, 0), image.size()));
    const QRect target = whole.translated(pixel(dx), pixel(dy)).intersected(whole);
    if (target.isEmpty()) return true;
    const QPoint shift(pixel(dx), pixel(dy));
    const auto bytes = static_cast<std::size_t>(target.width()) * 4;
    const auto copyLine = [&](int y) {
        const auto* const source = reinterpret_cast<const QRgb*>(image.constScanLine(y - shift.y()));
        std::memmove(reinterpret_cast<QRgb*>(image.scanLine(y)) + target.x(), source + target.x() - shift.x(), bytes);
    };
    if (shift.y() > 0) {
        for (int y = target.bottom(); y >= target.top(); --y) copyLine(y);
    } else {
        for (int y = target.top(); y <= target.bottom(); ++y) copyLine(y);
    }
    return true;
}

}  // namespace quib
