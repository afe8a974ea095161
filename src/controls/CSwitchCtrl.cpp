// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CSwitchCtrl.h"

#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

CSwitchCtrl::CSwitchCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                         CValue* bound, const QString& text)
    : CControl(window, number, left, top, newWidth, newHeight, bound), label(text) {
    hoverLook = true;
}

CSwitchCtrl::CSwitchCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                         CValue* bound, int glyphNumber)
    : CControl(window, number, left, top, newWidth, newHeight, bound), glyph(glyphNumber) {
    hoverLook = true;
}

void CSwitchCtrl::OnLButtonDown(int /*px*/, int /*py*/, int /*button*/) {
    if (readOnly || !enabled) return;
    if (momentary) return Update(true, true);
    SetValueAndUpdate(true, true, IsOn() ? 0.0F : 1.0F);
}

void CSwitchCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) {
    if (!readOnly) Update(false, true);
}

void CSwitchCtrl::OnMouseMove(int /*px*/, int /*py*/) {
    if (!readOnly && enabled) Owner().setCursor(Qt::PointingHandCursor);
}

void CSwitchCtrl::OnMouseLeave() { Owner().unsetCursor(); }

ERole CSwitchCtrl::Role() const {
    if (readOnly) return ERole::kText;
    return momentary || Value() == nullptr ? ERole::kButton : ERole::kSwitch;
}

// Several buttons may share one help: their words tell them apart.
QString CSwitchCtrl::SpokenValue() const {
    if (readOnly) return Text(IsOn() ? TextKey("On") : TextKey("Off"));
    return name.isEmpty() && label.size() > 2 ? label : QString();
}

void CSwitchCtrl::Draw() {
    EState state = readOnly ? EState::kNormal : PlainState();
    if (enabled && IsOn() && !pressed) state = hovered && !readOnly ? EState::kOnHover : EState::kOn;
    const QRgb accent = onColour != 0 ? onColour : Palette().Accent(section);
    Canvas().Fill(Rectangle(), backgroundColour);
    const QRectF area(Rectangle());
    DrawCap(Canvas(), area, state, accent);
    const QRgb colour = CapTextColour(state, accent);
    if (glyph >= 0) Canvas().Glyph(Skin(), glyph, area.center(), colour);
    Canvas().Text(area.adjusted(2, 0, -2, 0), label, colour, Height() >= 20 ? 11 : 10, Qt::AlignCenter, true);
}

void DrawCap(CCanvas& canvas, const QRectF& area, EState state, QRgb accent) {
    const CPalette& palette = Palette();
    QRgb top = palette.Colour(QStringLiteral("knob"));
    QRgb bottom = palette.Colour(QStringLiteral("panelRaised"));
    QRgb edge = palette.Colour(QStringLiteral("knobEdge"));
    switch (state) {
        case EState::kHover:
            top = palette.Colour(QStringLiteral("knobHover"));
            bottom = palette.Colour(QStringLiteral("knob"));
            break;
        case EState::kPressed:
            top = bottom = palette.Colour(QStringLiteral("well"));
            edge = accent;
            break;
        case EState::kOn:
        case EState::kOnHover:
        case EState::kPlaying:
            top = Mix(accent, qRgb(255, 255, 255), state == EState::kOnHover ? 0.3F : 0.12F);
            bottom = Mix(accent, qRgb(0, 0, 0), 0.1F);
            break;
        case EState::kDisabled:
            top = bottom = palette.Colour(QStringLiteral("panel"));
            break;
        default:
            break;
    }
    canvas.Box(area, 3, CCanvas::Vertical(area, top, bottom), edge);
}

QRgb CapTextColour(EState state, QRgb /*accent*/) {
    switch (state) {
        case EState::kOn:
        case EState::kOnHover:
        case EState::kPlaying:
            return qRgb(0x10, 0x14, 0x16);
        case EState::kDisabled:
            return Palette().Colour(QStringLiteral("textOff"));
        case EState::kNormal:
            return Palette().Colour(QStringLiteral("textMuted"));
        default:
            return Palette().Colour(QStringLiteral("text"));
    }
}

}  // namespace quib
