// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CInfoCtrl.h"

#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kTextMargin = 8;
constexpr int kLongestCaption = 40;  // letters
constexpr int kLowestHeight = 48;    // pixels below which it is a line

// What stands before the dash is the name of the thing.
std::pair<QString, QString> CaptionAndText(const QString& text) {
    const qsizetype dash = text.indexOf(QStringLiteral(" - "));
    if (dash <= 0 || dash >= kLongestCaption) return {QString(), text};
    return {text.left(dash), text.mid(dash + 3)};
}
}  // namespace

CInfoCtrl::CInfoCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                     int textHeight)
    : CControl(window, number, left, top, newWidth, newHeight), fontHeight(textHeight) {}

void CInfoCtrl::Resize(int newWidth, int newHeight) { SetSize(newWidth, newHeight); }

void CInfoCtrl::Clear() {
    if (stringIds.empty() && literal.isEmpty()) return;
    stringIds.clear();
    literal.clear();
    Update(false, true);
}

void CInfoCtrl::Show(int stringId) {
    if (stringIds.size() == 1 && stringIds[0] == stringId && literal.isEmpty()) return;
    stringIds = {stringId};
    literal.clear();
    Update(false, true);
}

void CInfoCtrl::Show(const QString& text) {
    if (stringIds.empty() && literal == text) return;
    stringIds.clear();
    literal = text;
    Update(false, true);
}

void CInfoCtrl::Append(int stringId) {
    stringIds.push_back(stringId);
    Update(false, true);
}

QStringList CInfoCtrl::Paragraphs() const {
    QStringList texts;
    for (const int id : stringIds) texts += InfoText(id, InfoLanguage(Owner().Settings()));
    if (!literal.isEmpty()) texts += literal;
    return texts;
}

void CInfoCtrl::Draw() {
    const CPalette& palette = Palette();
    const QRectF area(Rectangle());
    if (Height() < kLowestHeight) return DrawLine();
    Canvas().Fill(area, palette.Colour(QStringLiteral("panel")));
    Canvas().Frame(area, 0, palette.Colour(QStringLiteral("line")));
    qreal top = area.top() + kTextMargin - 2;
    for (const QString& paragraph : Paragraphs()) {
        const auto [caption, text] = CaptionAndText(paragraph);
        const QRectF rest(area.left() + kTextMargin, top, area.width() - 2 * kTextMargin, area.bottom() - top);
        if (!caption.isEmpty()) {
            Canvas().Text(QRectF(rest.left(), top, rest.width(), fontHeight + 4), caption,
                          palette.Colour(QStringLiteral("pattern")), fontHeight, Qt::AlignLeft | Qt::AlignVCenter,
                          true);
            top += fontHeight + 6;
        }
        const QRectF body(rest.left(), top, rest.width(), area.bottom() - top);
        top += Canvas().Paragraph(body, text, palette.Colour(QStringLiteral("text")), fontHeight) + 4;
    }
}

// The caption, and the text behind it: in one line, or smaller in two where one is too short.
void CInfoCtrl::DrawLine() {
    const CPalette& palette = Palette();
    Canvas().Fill(Rectangle(), backgroundColour);
    const auto [caption, text] = CaptionAndText(Paragraphs().join(QStringLiteral("  ")));
    QRectF rest = QRectF(Rectangle()).adjusted(kTextMargin, 0, -kTextMargin, 0);
    if (!caption.isEmpty()) {
        Canvas().Text(rest, caption, palette.Colour(QStringLiteral("pattern")), fontHeight,
                      Qt::AlignLeft | Qt::AlignVCenter, true);
        rest.setLeft(rest.left() + CCanvas::TextWidth(caption, fontHeight, true) + 2 * kTextMargin);
    }
    const QRgb colour = palette.Colour(QStringLiteral("text"));
    if (CCanvas::TextWidth(text, fontHeight) <= rest.width()) {
        return Canvas().Text(rest, text, colour, fontHeight, Qt::AlignLeft | Qt::AlignVCenter);
    }
    const int small = fontHeight - 1;
    const QString first = FirstLine(text, rest.width(), small);
    const qreal half = rest.height() / 2;
    Canvas().Text({rest.left(), rest.top() + 1, rest.width(), half}, first, colour, small,
                  Qt::AlignLeft | Qt::AlignVCenter);
    Canvas().Text({rest.left(), rest.top() + half - 1, rest.width(), half}, text.mid(first.size()).trimmed(), colour,
                  small, Qt::AlignLeft | Qt::AlignVCenter);
}

// As many words as have room.
QString CInfoCtrl::FirstLine(const QString& text, qreal room, int letters) {
    qsizetype end = 0;
    for (qsizetype space = text.indexOf(QLatin1Char(' ')); space > 0;
         space = text.indexOf(QLatin1Char(' '), space + 1)) {
        if (CCanvas::TextWidth(text.left(space), letters) > room) break;
        end = space;
    }
    return text.left(end);
}

}  // namespace quib
