// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CChoiceCtrl.h"

#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "controls/VirtualKeys.h"
#include "editors/panel/CPanelValues.h"
#include "editors/panel/PanelLook.h"

namespace quib {

namespace {

constexpr int kArrow = 20;
constexpr int kFinest = 128;  // places at which another text is looked for

}  // namespace

CChoiceCtrl::CChoiceCtrl(CWinControl& window, const QRect& place, CPanelValues& panelValues, int number)
    : CControl(window, 0, place.x(), place.y(), place.width(), place.height()), values(panelValues), parameter(number) {
    hoverLook = true;
    takesWheel = true;
    takesDigits = true;
    values.Connect(*this, parameter);
}

QRectF CChoiceCtrl::Field() const {
    return QRectF(X() + 1, Y() + (caption.isEmpty() ? (Height() - kFieldHeight) / 2 : 4), Width() - 2, kFieldHeight);
}

// The plug-in does not tell how many values it knows, so the next one is where its text changes.
void CChoiceCtrl::Step(int direction) {
    const float before = values.Get(parameter);
    const QString text = values.Text(parameter);
    const int places = steps > 1 ? steps - 1 : kFinest;
    for (int place = 1; place <= places; ++place) {
        const float next = before + static_cast<float>(direction * place) / static_cast<float>(places);
        if (next < -0.001F || next > 1.001F) break;
        values.Set(parameter, next);
        if (values.Text(parameter) == text) continue;
        values.Keep(parameter, before);
        return Update(false, true);
    }
    values.Set(parameter, before);
}

void CChoiceCtrl::OnMouseMove(int /*px*/, int /*py*/) {
    if (enabled) Owner().setCursor(Qt::PointingHandCursor);
}

void CChoiceCtrl::OnMouseLeave() { Owner().unsetCursor(); }

void CChoiceCtrl::OnLButtonDown(int px, int /*py*/, int /*button*/) {
    if (enabled) Step(px < Field().center().x() ? -1 : 1);
}

void CChoiceCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    wheelRest += NotchesOf(word);
    if (!enabled || std::abs(wheelRest) < 1) return;
    Step(wheelRest > 0 ? 1 : -1);
    wheelRest = 0;
}

void CChoiceCtrl::TakeNumber(float number) {
    values.SetByText(parameter, QString::number(static_cast<double>(number)));
    Update(false, true);
}

void CChoiceCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    const QRectF field = Field();
    const QRgb colour = Colour(enabled ? hovered ? "text" : "textMuted" : "textOff");
    Canvas().Box(field, 3, Colour("well"), Colour("edge"));
    Canvas().Glyph(Skin(), counts ? picture::kGlyphMinus : picture::kGlyphArrowLeft,
                   {field.left() + kArrow / 2.0, field.center().y()}, colour);
    Canvas().Glyph(Skin(), counts ? picture::kGlyphPlus : picture::kGlyphArrowRight,
                   {field.right() - kArrow / 2.0, field.center().y()}, colour);
    const QString text = ValueText();
    const QRectF inside = field.adjusted(kArrow, 0, -kArrow, 0);
    Canvas().Text(inside, text, Colour(enabled ? "text" : "textOff"), FittingHeight(text, inside.width(), true),
                  Qt::AlignCenter, true);
    if (caption.isEmpty()) return;
    Canvas().Text(QRectF(X(), field.bottom() + 3, Width(), 14), caption, Colour(enabled ? "textMuted" : "textOff"), 10);
}

}  // namespace quib
