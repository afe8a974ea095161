// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CLabelCtrl.h"

#include <QCursor>
#include <QMenu>

#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/Mnemonics.h"
#include "controls/SkinNumbers.h"

namespace quib {

CLabelCtrl::CLabelCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                       const QString& fixedText)
    : CControl(window, number, left, top, newWidth, newHeight),
      textColour(Palette().Colour(QStringLiteral("text"))),
      text(fixedText) {}

void CLabelCtrl::SetText(const QString& newText) {
    if (text == newText) return;
    text = newText;
    Update(false, true);
}

ERole CLabelCtrl::Role() const {
    if (!entryTitle.isEmpty()) return ERole::kField;
    return text.isEmpty() ? ERole::kNone : ERole::kText;
}

QRectF CLabelCtrl::DrawGround(QRgb ground) {
    Canvas().Fill(Rectangle(), fill.value_or(backgroundColour));
    const QRectF area(Rectangle());
    if (vacant && !hovered) {
        Canvas().Fill({area.left(), area.bottom() - 1, area.width(), 1}, Palette().Colour(QStringLiteral("line")));
        return area.adjusted(6, 0, -2, 0);
    }
    if (!sunken) return area;
    Canvas().Box(area, 3, ground, Palette().Colour(QStringLiteral("edge")));
    return area.adjusted(6, 0, -5, 0);
}

void CLabelCtrl::Draw() { DrawText(DrawGround(Palette().Colour(QStringLiteral("well"))), textColour); }

bool CLabelCtrl::HasChanged() const { return CControl::HasChanged() || IsStruck() != drawnStruck; }

void CLabelCtrl::DrawText(const QRectF& area, QRgb colour) {
    drawnStruck = IsStruck();
    if (Value() != nullptr) text = ValueText();
    const QRgb shown = drawnStruck ? Palette().Colour(QStringLiteral("textDim")) : colour;
    if (digits) return Canvas().Digits(area, text, shown, fontHeight, alignment, strong);
    Canvas().Text(area, text, shown, fontHeight, alignment, strong);
    if (!drawnStruck) return;
    const qreal end = std::min(area.right(), area.left() + CCanvas::TextWidth(text, fontHeight, strong));
    Canvas().Line(area.left(), area.center().y() + 1, end, area.center().y() + 1, shown);
}

CLiveLabelCtrl::CLiveLabelCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth,
                               int newHeight, std::function<QString()> textSource)
    : CLabelCtrl(window, number, left, top, newWidth, newHeight), CTicked(window), source(std::move(textSource)) {}

void CLiveLabelCtrl::Tick() {
    if (IsShown()) SetText(source());
}

void PopUpMenu(CWinControl& window, const std::function<void(QMenu&)>& fillMenu) {
    auto* const menu = new QMenu(&window);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fillMenu(*menu);
    if (menu->isEmpty()) return menu->deleteLater();
    KeepMnemonics(*menu);
    menu->popup(window.MenuPoint());
}

CLabelMenuCtrl::CLabelMenuCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth,
                               int newHeight, const QString& fixedText, std::function<void(QMenu&)> fillMenu)
    : CLabelCtrl(window, number, left, top, newWidth, newHeight, fixedText), buildMenu(std::move(fillMenu)) {
    hoverLook = true;
    sunken = true;
    captureOnClick = false;
}

void CLabelMenuCtrl::OnMouseMove(int /*px*/, int /*py*/) {
    if (enabled) Owner().setCursor(Qt::PointingHandCursor);
}

void CLabelMenuCtrl::OnMouseLeave() { Owner().unsetCursor(); }

void CLabelMenuCtrl::OnLButtonDown(int /*px*/, int /*py*/, int /*button*/) {
    if (!enabled || !buildMenu) return;
    PopUpMenu(Owner(), buildMenu);
}

void CLabelMenuCtrl::Draw() {
    const QRectF area = DrawGround(Palette().Colour(hovered ? QStringLiteral("wellDeep") : QStringLiteral("well")));
    const QRgb plain = hovered ? Palette().Colour(QStringLiteral("text")) : textColour;
    const QRgb colour = enabled ? plain : Palette().Colour(QStringLiteral("textDim"));
    if (vacant && !hovered) return DrawText(area, colour);
    DrawText(area.adjusted(0, 0, -10, 0), colour);
    Canvas().Glyph(Skin(), picture::kGlyphArrowDown, QPointF(area.right() - 3, area.center().y()),
                   hovered ? Palette().Accent(section) : Palette().Colour(QStringLiteral("textDim")));
}

}  // namespace quib
