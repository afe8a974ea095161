// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CInfoCtrl.h"

#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr QRgb kBackground = qRgb(0x38, 0x38, 0x38);
constexpr QRgb kLines = qRgb(0x40, 0x40, 0x40);
constexpr QRgb kText = qRgb(0xFA, 0xFA, 0xFA);
constexpr int kTextMargin = 8;
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
    CCanvas& canvas = Canvas();
    const QRectF area(Rectangle());
    canvas.Fill(area, kBackground);
    canvas.Frame(area, 0, kLines);
    qreal top = area.top() + kTextMargin - 2;
    for (const QString& text : Paragraphs()) {
        const QRectF rest(area.left() + kTextMargin, top, area.width() - 2 * kTextMargin, area.bottom() - top);
        // What stands before the dash is the name of the thing.
        const qsizetype dash = text.indexOf(QStringLiteral(" - "));
        if (dash > 0 && dash < 40) {
            canvas.Text(QRectF(rest.left(), top, rest.width(), fontHeight + 4), text.left(dash),
                        Palette().Colour(QStringLiteral("pattern")), fontHeight, Qt::AlignLeft | Qt::AlignVCenter,
                        true);
            top += fontHeight + 6;
        }
        const QRectF body(rest.left(), top, rest.width(), area.bottom() - top);
        top += canvas.Paragraph(body, dash > 0 && dash < 40 ? text.mid(dash + 3) : text, kText, fontHeight) + 4;
    }
}

}  // namespace quib
