// SPDX-License-Identifier: GPL-3.0-or-later
// Where the entries of the start page lie, and how they look.
#include <algorithm>

#include "app/CMainWindow.h"
#include "app/start/CStartPage.h"
#include "controls/SkinNumbers.h"
#include "document/CSettings.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr qreal kMargin = 24;
constexpr qreal kGap = 12;
constexpr qreal kCardTop = 36;
constexpr qreal kCardHeight = 208;
constexpr qreal kPicture = 116;
constexpr qreal kBelow = kCardTop + kCardHeight + 20;
constexpr qreal kColumnTop = kBelow + 28;

}  // namespace

void CStartPage::Place(int from, int to, qreal left, qreal top, qreal width) {
    for (int index = from; index < to; ++index) {
        Entry& entry = entries[static_cast<std::size_t>(index)];
        const qreal height = entry.kind == EKind::kBig ? 56 : 28;
        if (entry.kind == EKind::kCheck) top += 16;
        entry.area = QRectF(left, top, width, height);
        top += height + (entry.kind == EKind::kBig ? 6 : 4);
    }
}

void CStartPage::Arrange() {
    const qreal room = std::max(600.0, static_cast<qreal>(SkinSize().width()) - 2 * kMargin);
    const auto count = static_cast<int>(cards.size());
    const qreal cardWidth = count > 0 ? std::min(254.0, (room - (count - 1) * kGap) / count) : 0;
    for (int index = 0; index < count; ++index) {
        entries[static_cast<std::size_t>(index)].area =
            QRectF(kMargin + index * (cardWidth + kGap), kCardTop, cardWidth, kCardHeight);
    }
    const qreal side = std::min(392.0, (room - 48) * 0.3);
    const qreal middle = std::min(520.0, room - 2 * side - 48);
    Place(count, firstRecent, kMargin, kColumnTop, side);
    Place(firstRecent, firstLearn, kMargin + side + 24, kColumnTop, middle);
    Place(firstLearn, static_cast<int>(entries.size()), kMargin + side + middle + 48, kColumnTop, side);
}

void CStartPage::Draw(CCanvas& canvas) {
    const CPalette& palette = Palette();
    const auto heading = [&](qreal left, qreal top, const QString& text) {
        canvas.Text(QRectF(left, top, 400, 24), text, palette.Colour(QStringLiteral("text")), 17,
                    Qt::AlignLeft | Qt::AlignVCenter, true);
        return left + CCanvas::TextWidth(text, 17, true) + 20;
    };
    canvas.Fill(QRectF(QPointF(0, 0), SkinSize() + QSize(1, 1)), palette.Colour(QStringLiteral("window")));
    Arrange();
    const qreal behind = heading(kMargin, 8, Text("Listen to an example"));
    canvas.Text(QRectF(behind, 9, 500, 24), Text("A click opens it, the arrow plays it at once."),
                palette.Colour(QStringLiteral("textMuted")), 12, Qt::AlignLeft | Qt::AlignVCenter);
    const auto count = static_cast<int>(cards.size());
    heading(kMargin, kBelow, Text("Begin"));
    if (firstRecent < firstLearn) {
        heading(entries[static_cast<std::size_t>(firstRecent)].area.left(), kBelow, Text("Go on"));
    }
    heading(entries[static_cast<std::size_t>(firstLearn)].area.left(), kBelow, Text("Learn"));
    for (int index = 0; index < static_cast<int>(entries.size()); ++index) {
        const Entry& entry = entries[static_cast<std::size_t>(index)];
        const bool over = index == hovered;
        index < count ? DrawCard(canvas, entry, cards[static_cast<std::size_t>(index)], over)
                      : DrawEntry(canvas, entry, over);
        if (index == focused && hasFocus()) DrawFocus(canvas, entry);
    }
}

void CStartPage::DrawFocus(CCanvas& canvas, const Entry& entry) const {
    canvas.Frame(entry.area.adjusted(-2, -2, 2, 2), 6, Palette().Colour(QStringLiteral("text")), 2);
}

void CStartPage::DrawCard(CCanvas& canvas, const Entry& entry, const SongCard& card, bool over) {
    const CPalette& palette = Palette();
    canvas.Box(entry.area, 4, palette.Colour(over ? QStringLiteral("panelRaised") : QStringLiteral("panel")),
               palette.Colour(over ? QStringLiteral("textMuted") : QStringLiteral("edge")));
    const QRectF picture(entry.area.left() + 1, entry.area.top() + 1, entry.area.width() - 2, kPicture);
    DrawSong(canvas, card, picture);
    const QRectF line = entry.area.adjusted(12, kPicture + 12, -56, 0);
    const auto text = [&](qreal top, qreal right, const QString& words, const char* colour, int height, bool strong) {
        canvas.Text(QRectF(line.left(), line.top() + top, right - line.left(), 24), words,
                    palette.Colour(QLatin1String(colour)), height, Qt::AlignLeft | Qt::AlignVCenter, strong);
    };
    text(0, line.right(), entry.title, "text", 17, true);
    text(24, line.right(), entry.right, "text", 12, false);
    text(48, entry.area.right() - 12, entry.note, "textMuted", 11, false);
    const QRectF disc = Disc(entry);
    const bool lit = over && overDisc;
    canvas.Ellipse(disc.center(), 17,
                   lit ? palette.Accent(ESection::kTransport)
                       : palette.Colour(over ? QStringLiteral("knobHover") : QStringLiteral("knob")));
    canvas.Glyph(Skin(), picture::kGlyphPlay, disc.center(),
                 palette.Colour(lit ? QStringLiteral("glass") : QStringLiteral("text")));
}

void CStartPage::DrawEntry(CCanvas& canvas, const Entry& entry, bool over) {
    const CPalette& palette = Palette();
    const QRectF& area = entry.area;
    const QRgb words = palette.Colour(QStringLiteral("text"));
    const QRgb dim = palette.Colour(QStringLiteral("textMuted"));
    constexpr auto kLeft = Qt::AlignLeft | Qt::AlignVCenter;
    if (entry.kind == EKind::kCheck) {
        const QRectF box(area.left(), area.center().y() - 7, 14, 14);
        canvas.Box(box, 3, palette.Colour(QStringLiteral("glass")),
                   palette.Colour(over ? QStringLiteral("text") : QStringLiteral("edge")));
        if (window.Workstation().Settings().ReadSettingInt(kSettingsSection, QStringLiteral("ShowStartPage"), 1) != 0) {
            canvas.Line(box.left() + 3, box.top() + 7, box.left() + 6, box.top() + 10, words, 2);
            canvas.Line(box.left() + 6, box.top() + 10, box.left() + 11, box.top() + 4, words, 2);
        }
        return canvas.Text(area.adjusted(22, 0, 0, 0), entry.title, words, 12, kLeft);
    }
    canvas.Box(area, 4, palette.Colour(over ? QStringLiteral("panelRaised") : QStringLiteral("panel")),
               palette.Colour(over ? QStringLiteral("textMuted") : QStringLiteral("edge")));
    if (entry.kind == EKind::kBig) {
        const QRgb accent = palette.Accent(entry.section);
        canvas.Fill(QRectF(area.left(), area.top(), 3, area.height()), accent);
        canvas.Glyph(Skin(), entry.glyph, QPointF(area.left() + 32, area.center().y()), accent);
        canvas.Text(QRectF(area.left() + 60, area.top() + 6, area.width() - 72, 24), entry.title, words, 17, kLeft,
                    true);
        return canvas.Text(QRectF(area.left() + 60, area.top() + 29, area.width() - 72, 20), entry.note, dim, 12,
                           kLeft);
    }
    const qreal behind = CCanvas::TextWidth(entry.right, 12) + 12;
    const qreal split = entry.note.isEmpty() ? area.width() - behind : area.width() * 0.42;
    canvas.Text(QRectF(area.left() + 12, area.top(), split - 16, area.height()), entry.title, words, 12, kLeft,
                !entry.note.isEmpty());
    canvas.Text(QRectF(area.left() + split, area.top(), area.width() - split - behind - 8, area.height()), entry.note,
                dim, 12, kLeft);
    canvas.Text(area.adjusted(0, 0, -12, 0), entry.right, dim, 12, Qt::AlignRight | Qt::AlignVCenter);
}

}  // namespace quib
