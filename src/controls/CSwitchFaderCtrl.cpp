// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CSwitchFaderCtrl.h"

#include <algorithm>

#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "controls/VirtualKeys.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kChooseEffectText = 390;
constexpr float kFilledShare = 0.45F;  // of the accent, on the well
constexpr int kTall = 26;              // pixels from which the name is larger
constexpr int kLevelWidth = 112;       // pixels from which the level is written
}  // namespace

CSwitchFaderCtrl::CSwitchFaderCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth,
                                   int newHeight, CValue* bound, CValue* boundLevel)
    : CControl(window, number, left, top, newWidth, newHeight, bound), level(boundLevel) {
    takesWheel = true;
    holdsParts = true;
    hoverLook = true;
    doubleClickIsClick = false;
    takesDigits = boundLevel != nullptr;
}

void CSwitchFaderCtrl::OnLButtonDown(int px, int /*py*/, int /*button*/) {
    if (!enabled && onEmptyClick) return onEmptyClick(*this);
    if (!enabled) {
        if (InfoTextsAreShown(Owner().Settings(), 0) && Owner().onMessage) {
            Owner().onMessage(QStringLiteral("QUIB STUDIO"),
                              InfoText(kChooseEffectText, InfoLanguage(Owner().Settings())));
        }
        return;
    }
    Hold({IsSwitch(px) ? Value() : level});
    if (IsSwitch(px)) return SetValueAndUpdate(true, true, IsOn() ? 0.0F : 1.0F);
    dragging = true;
    levelBefore = level->Get();
    drag.Begin(levelBefore, px);
    ShowLevel();
}

void CSwitchFaderCtrl::OnDoubleClick(int px, int /*py*/) {
    if (!enabled) return;
    if (IsSwitch(px)) {
        ChangeByUser(IsOn() ? 0.0F : 1.0F);
    } else {
        ReturnToDefault();
    }
}

void CSwitchFaderCtrl::OnMouseMove(int px, int /*py*/) {
    if (enabled) Owner().setCursor(Qt::PointingHandCursor);
    if (!dragging) return;
    const float perPixel = levelMaximum / static_cast<float>(std::max(1, Width() - kSwitchZone));
    ChangeLevel(std::clamp(drag.Move(px, perPixel, Owner().IsFine()), 0.0F, levelMaximum));
}

void CSwitchFaderCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) {
    const bool dragged = std::exchange(dragging, false);
    Update(false, true);
    if (dragged) FinishLevel(levelBefore);
}

void CSwitchFaderCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    if (!enabled || level == nullptr) return;
    const float share = (word & kWheelControl) != 0 ? 0.001F : 0.01F;
    TakeNumber(level->Get() + NotchesOf(word) * share * levelMaximum);
}

void CSwitchFaderCtrl::OnMouseLeave() { Owner().unsetCursor(); }

void CSwitchFaderCtrl::ChangeLevel(float next) {
    level->Set(next);
    Update(true, true);
    ShowLevel();
}

QString CSwitchFaderCtrl::LevelText() const {
    const float now = level->Get();
    return formatLevel ? formatLevel(now) : QString::number(static_cast<double>(now), 'f', 1);
}

void CSwitchFaderCtrl::ShowLevel() { Owner().ShowBubble(*this, LevelText()); }

// Enter switches: arrows and digits have the level.
void CSwitchFaderCtrl::Activate(int /*part*/) {
    const QPoint middle = Rectangle().center();
    if (!enabled) return OnLButtonDown(middle.x(), middle.y(), 0);
    ChangeByUser(IsOn() ? 0.0F : 1.0F);
}

QString CSwitchFaderCtrl::SpokenValue() const {
    if (!enabled) return text;
    const QString state = Text(IsOn() ? TextKey("On") : TextKey("Off"));
    return QStringList({text, level != nullptr ? LevelText() + QStringLiteral(", ") + state : state})
        .join(QStringLiteral(", "));
}

CControl::Range CSwitchFaderCtrl::Amount() const {
    if (level == nullptr) return CControl::Amount();
    return {level->Get(), 0, levelMaximum};
}

void CSwitchFaderCtrl::FinishLevel(float before) {
    if (onLevelGesture && level->Get() != before) onLevelGesture(*this, before);
}

void CSwitchFaderCtrl::TakeNumber(float number) {
    if (level == nullptr) return;
    const float before = level->Get();
    Hold({level});
    ChangeLevel(std::clamp(number, 0.0F, levelMaximum));
    Hold({});
    FinishLevel(before);
}

void CSwitchFaderCtrl::ReturnToDefault() {
    if (enabled) TakeNumber(levelDefault);
}

bool CSwitchFaderCtrl::HasChanged() const {
    return CControl::HasChanged() || (level != nullptr && level->Get() != drawnLevel);
}

void CSwitchFaderCtrl::SetText(const QString& newText) {
    if (text == newText) return;
    text = newText;
    Update(false, true);
}

// What is off is a dim name in its well; what is on has a frame, its level and a lit sign.
void CSwitchFaderCtrl::Draw() {
    const CPalette& palette = Palette();
    const bool on = IsOn();
    drawnLevel = level != nullptr ? level->Get() : 0;
    const QRgb accent = palette.Accent(section);
    Canvas().Fill(Rectangle(), backgroundColour);
    const QRectF area(Rectangle());
    if (!enabled) return DrawEmpty(area);
    const QRgb well = palette.Colour(hovered ? QStringLiteral("wellDeep") : QStringLiteral("well"));
    const QRgb filled = Mix(palette.Colour(QStringLiteral("well")), accent, kFilledShare);
    Canvas().FillRound(area, 3, on && level == nullptr ? filled : well);
    if (level != nullptr && on) {
        const qreal way = (area.width() - kSwitchZone) * static_cast<qreal>(drawnLevel / levelMaximum);
        if (way > 0.5) Canvas().FillRound(QRectF(area.left(), area.top(), way, area.height()), 3, filled);
    }
    Canvas().Frame(area, 3, on ? accent : palette.Colour(QStringLiteral("edge")));
    DrawName(area.adjusted(6, 0, -kSwitchZone, 0), on);
    const QRgb sign = !on                ? palette.Colour(QStringLiteral("textDim"))
                      : level == nullptr ? palette.Colour(QStringLiteral("text"))
                                         : accent;
    Canvas().Glyph(Skin(), picture::kGlyphPower, {area.right() - kSwitchZone / 2.0 + 2, area.center().y()}, sign);
}

void CSwitchFaderCtrl::DrawName(QRectF room, bool on) {
    const QRgb colour = Palette().Colour(on        ? QStringLiteral("text")
                                         : hovered ? QStringLiteral("textMuted")
                                                   : QStringLiteral("textDim"));
    const int letters = Height() >= kTall ? 12 : 11;
    if (on && formatLevel && Width() >= kLevelWidth) {
        QString decibels = formatLevel(drawnLevel);
        decibels.remove(QStringLiteral(" dB"));
        Canvas().Digits(room, decibels, colour, letters, Qt::AlignRight | Qt::AlignVCenter);
        room.setRight(room.right() - CCanvas::DigitsWidth(decibels, letters) - 4);
    }
    Canvas().Text(room, text, colour, letters, Qt::AlignLeft | Qt::AlignVCenter);
    if (!struckWhileOff || on) return;
    const qreal end = std::min(room.right(), room.left() + CCanvas::TextWidth(text, letters));
    Canvas().Line(room.left(), room.center().y() + 1, end, room.center().y() + 1, colour);
}

// A word and a hairline: there is nothing to switch.
void CSwitchFaderCtrl::DrawEmpty(const QRectF& area) {
    const CPalette& palette = Palette();
    const bool lit = hovered && onEmptyClick;
    if (lit) Canvas().FillRound(area, 3, palette.Colour(QStringLiteral("well")));
    Canvas().Fill({area.left(), area.bottom() - 1, area.width(), 1}, palette.Colour(QStringLiteral("line")));
    Canvas().Text(area.adjusted(6, 0, -4, 0), text,
                  palette.Colour(lit ? QStringLiteral("text") : QStringLiteral("textDim")), 11,
                  Qt::AlignLeft | Qt::AlignVCenter);
}

void CSwitchFaderCtrl::ListLearnable(std::vector<Learnable>& parts) const {
    if (!enabled) return;
    const QRect shown = ShownRectangle();
    const int zone = level != nullptr ? kSwitchZone : Width();
    if (learns) parts.push_back({QRect(X() + Width() - zone, Y(), zone, Height()).intersected(shown), *learns});
    if (level == nullptr || !levelLearns) return;
    parts.push_back({QRect(X(), Y(), Width() - zone, Height()).intersected(shown), *levelLearns});
}

}  // namespace quib
