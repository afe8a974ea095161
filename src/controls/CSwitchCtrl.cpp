// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CSwitchCtrl.h"

#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr float kHoverShare = 0.08F;  // a cap under the mouse, towards the text
}

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
    if (lamp) return DrawLamp(area, accent);
    const bool bare = flat && (state == EState::kNormal || state == EState::kDisabled);
    if (!bare) DrawCap(Canvas(), area, state, accent);
    DrawFace(area, CapTextColour(state, accent));
}

void CSwitchCtrl::DrawLamp(const QRectF& area, QRgb accent) {
    constexpr qreal kRadius = 4;
    Canvas().Ellipse(area.center(), kRadius, IsOn() ? accent : Palette().Colour(QStringLiteral("textDim")));
    if (!IsOn()) Canvas().Ellipse(area.center(), kRadius - 1, Palette().Colour(QStringLiteral("well")));
}

void CSwitchCtrl::DrawFace(const QRectF& area, QRgb colour) {
    constexpr int kBesideGlyph = 26;
    const bool over = Height() >= kOverHeight;
    if (glyph >= 0 && !label.isEmpty()) {
        const int letters = fontHeight > 0 ? fontHeight : over ? 10 : 11;
        const QPointF centre = over ? QPointF(area.center().x(), area.top() + 14)
                                    : QPointF(area.left() + kBesideGlyph / 2.0 + 1, area.center().y());
        Canvas().Glyph(Skin(), glyph, centre, colour);
        if (over)
            return Canvas().Text(QRectF(area.left(), area.bottom() - 17, area.width(), 14), label, colour, letters,
                                 Qt::AlignCenter, true);
        return Canvas().Text(area.adjusted(kBesideGlyph, 0, -2, 0), label, colour, letters,
                             Qt::AlignLeft | Qt::AlignVCenter);
    }
    if (glyph >= 0) Canvas().Glyph(Skin(), glyph, area.center(), colour);
    const int letters = fontHeight > 0 ? fontHeight : Height() >= 20 ? 11 : 10;
    Canvas().Text(area.adjusted(1, 0, -1, 0), label, colour, letters, Qt::AlignCenter, true);
}

void DrawCap(CCanvas& canvas, const QRectF& area, EState state, QRgb accent) {
    const CPalette& palette = Palette();
    QRgb ground = palette.Colour(QStringLiteral("panelRaised"));
    QRgb edge = palette.Colour(QStringLiteral("edge"));
    switch (state) {
        case EState::kHover:
            ground = Mix(ground, palette.Colour(QStringLiteral("text")), kHoverShare);
            break;
        case EState::kPressed:
            ground = palette.Colour(QStringLiteral("well"));
            edge = accent;
            break;
        case EState::kOn:
        case EState::kOnHover:
        case EState::kPlaying:
            ground = edge =
                state == EState::kOnHover ? Mix(accent, palette.Colour(QStringLiteral("text")), kHoverShare) : accent;
            break;
        case EState::kDisabled:
            ground = palette.Colour(QStringLiteral("panel"));
            edge = palette.Colour(QStringLiteral("line"));
            break;
        default:
            break;
    }
    canvas.Box(area, 3, ground, edge);
}

QRgb CapTextColour(EState state, QRgb /*accent*/) {
    switch (state) {
        case EState::kOn:
        case EState::kOnHover:
        case EState::kPlaying:
            return Palette().Colour(QStringLiteral("onAccent"));
        case EState::kDisabled:
            return Palette().Colour(QStringLiteral("textOff"));
        default:
            return Palette().Colour(QStringLiteral("text"));
    }
}

}  // namespace quib
