// SPDX-License-Identifier: GPL-3.0-or-later
// Letters on the canvas: fonts, lines of text and numbers that run.
#include "controls/CCanvas.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QTextLayout>
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>

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

bool keepsFonts = false;

// Fonts and lines live no longer than the application.
void KeepUntilItsEnd() {
    if (std::exchange(keepsFonts, true)) return;
    qAddPostRoutine([] {
        keptFonts.fill(std::nullopt);
        keepsFonts = false;
    });
}

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
    if (kept != nullptr) {
        KeepUntilItsEnd();
        kept->emplace().font = font;
    }
    return font;
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

}  // namespace quib
