// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CControl.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"

namespace quib {

CControl::CControl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                   CValue* bound)
    : owner(window),
      identifier(number),
      relativeX(left),
      relativeY(top),
      width(newWidth),
      height(newHeight),
      value(bound) {}

CControl::~CControl() {
    Hold({});
    owner.Forget(*this);
}

CCanvas& CControl::Canvas() const noexcept {
    CCanvas& canvas = owner.Canvas();
    canvas.SetSilent(cannotSound);
    return canvas;
}

CSkin& CControl::Skin() const noexcept {
    CSkin& skin = owner.Skin();
    skin.SetSilent(cannotSound);
    return skin;
}

void CControl::SetPosition(int newRelativeX, int newRelativeY) noexcept {
    relativeX = newRelativeX;
    relativeY = newRelativeY;
}

void CControl::SetSize(int newWidth, int newHeight) noexcept {
    width = newWidth;
    height = newHeight;
}

void CControl::Layout(int parentX, int parentY, const QRect& shown) {
    x = relativeX + parentX;
    y = relativeY + parentY;
    clip = shown;
    for (const auto& child : children) child->Layout(x, y, shown);
    OnMove();
}

void CControl::ClearChildren() { children.clear(); }

void CControl::SetVisible(bool flag) {
    visible = flag;
    for (const auto& child : children) child->TellShown(IsShown());
    OnShow(flag);
}

void CControl::TellShown(bool parentNowShown) {
    parentShown = parentNowShown;
    if (!visible) return;
    for (const auto& child : children) child->TellShown(parentNowShown);
    OnShow(parentNowShown);
}

CControl* CControl::HitTest(int px, int py) {
    if (!visible) return nullptr;
    if (px < x || py < y || px - x > width || py - y > height) return nullptr;
    if (!clip.adjusted(0, 0, 1, 1).contains(px, py)) return nullptr;
    for (const auto& child : children) {
        if (CControl* const hit = child->HitTest(px, py)) return hit;
    }
    return this;
}

// By index: a control that is told a key may build or clear others.
void CControl::BroadcastKeyDown(int virtualKey) {
    for (std::size_t index = 0; index < children.size(); ++index) children[index]->BroadcastKeyDown(virtualKey);
    OnKeyDown(virtualKey);
}

void CControl::BroadcastKeyUp(int virtualKey) {
    for (std::size_t index = 0; index < children.size(); ++index) children[index]->BroadcastKeyUp(virtualKey);
    OnKeyUp(virtualKey);
}

void CControl::BroadcastLeave() {
    for (std::size_t index = 0; index < children.size(); ++index) children[index]->BroadcastLeave();
    OnMouseLeave();
}

float CControl::Share() const noexcept {
    if (maximum == minimum) return 0;
    return std::clamp((ValueNow() - minimum) / (maximum - minimum), 0.0F, 1.0F);
}

// What is no number becomes the minimum.
float CControl::Limited(float number) const noexcept {
    if (!(number >= minimum)) return minimum;
    return number > maximum ? maximum : number;
}

void CControl::Update(bool notify, bool redraw) {
    if (value != nullptr) {
        const float now = value->Get();
        // Not by comparing with the limited value: a write could undo what another thread sets meanwhile.
        if (!(now >= minimum && now <= maximum)) value->Set(Limited(now));
    }
    if (redraw) Refresh();
    if (notify && onChange) onChange(*this);
}

// Limited before it is stored: the render thread may look at any time.
void CControl::SetValueAndUpdate(bool notify, bool redraw, float next) {
    if (value != nullptr) value->Set(Limited(next));
    Update(notify, redraw);
}

void CControl::DrawClipped() {
    drawnValue = ValueNow();
    const QRect shown = ShownRectangle();
    if (shown.isEmpty()) return;
    Canvas().SetClip(shown);
    Draw();
}

void CControl::Refresh(bool blit) {
    if (!IsShown() || !owner.HasBackBuffer()) return;
    DrawClipped();
    for (const auto& child : children) child->Refresh(false);
    if (blit) Blit();
}

void CControl::Blit() {
    if (!parentShown) return;
    if (visible) {
        owner.BlitRectangle(ShownRectangle());
    } else {
        FillRect(backgroundColour);
    }
}

void CControl::BlitRect(int x0, int y0, int x1, int y1) {
    const QRect part(QPoint(std::max(x0, x), std::max(y0, y)),
                     QPoint(std::min(x1, x + width) - 1, std::min(y1, y + height) - 1));
    if (IsShown()) owner.BlitRectangle(part.intersected(clip));
}

void CControl::FillRect(QRgb colour) {
    const QRect shown = ShownRectangle();
    if (shown.isEmpty() || !owner.HasBackBuffer()) return;
    Canvas().SetClip(shown);
    Canvas().Fill(shown, colour);
    owner.BlitRectangle(shown);
}

void CControl::RefreshIfChanged() {
    if (!IsShown()) return;
    if (HasChanged()) return Update(false, true);
    for (const auto& child : children) child->RefreshIfChanged();
}

void CControl::ListLearnable(std::vector<Learnable>& parts) const {
    if (learns && enabled) parts.push_back({ShownRectangle(), *learns});
}

QString CControl::ValueText() const {
    if (formatValue) return formatValue(ValueNow());
    const float range = maximum - minimum;
    return QString::number(static_cast<double>(ValueNow()), 'f', range > 50 ? 1 : range > 5 ? 2 : 3);
}

QString CControl::EntryText() const {
    if (value == nullptr || !entryText.isEmpty()) return entryText;
    return formatEntry ? formatEntry(ValueNow()) : QString::number(static_cast<double>(ValueNow()));
}

// --- Without the mouse ----------------------------------------------------------------------------------

ERole CControl::Role() const {
    if (!children.empty()) return name.isEmpty() ? ERole::kNone : ERole::kGroup;
    if (value != nullptr) return ERole::kSlider;
    return infoString >= 0 ? ERole::kArea : ERole::kNone;
}

QString CControl::SpokenValue() const {
    return Role() == ERole::kSlider && value != nullptr ? ValueText() : ShownText();
}

void CControl::Activate(int part) {
    const ERole role = Role();
    if (part < 0 && (role == ERole::kSlider || role == ERole::kField)) {
        if (enabled && (value != nullptr || !entryTitle.isEmpty())) owner.RunManualEntry(*this);
        return;
    }
    owner.Mouse().ClickOn(*this, primaryButton, part < 0 ? Rectangle().center() : PartAt(part).area.center());
}

void CControl::Turn(int /*part*/, int notches, bool fine) {
    constexpr int kNotch = 120;
    const auto turn = static_cast<std::uint16_t>(notches * kNotch);
    const QPoint middle = Rectangle().center();
    OnMouseWheel(middle.x(), middle.y(), static_cast<std::uint32_t>(turn) << 16U | (fine ? kWheelControl : 0U));
}

void CControl::GoToEnd(bool highest) {
    if (!enabled || !IsTurned()) return;
    const Range range = Amount();
    TakeNumber(highest ? range.highest : range.lowest);
}

void CControl::Hold(std::initializer_list<const CValue*> values) {
    const std::vector<const CValue*> before = std::exchange(heldValues, values);
    if (!owner.onHold) return;
    for (const CValue* const known : before) owner.onHold(known, false);
    for (const CValue* const taken : heldValues) owner.onHold(taken, true);
}

void CControl::BeginGesture() {
    if (gestureStart || value == nullptr) return;
    gestureStart = value->Get();
    if (!holdsParts) Hold({value});
}

void CControl::EndGesture() {
    if (!gestureStart) return;
    const float before = *gestureStart;
    gestureStart.reset();
    Hold({});
    if (onGesture && value != nullptr && value->Get() != before) onGesture(*this, before);
}

void CControl::ChangeByUser(float next) {
    BeginGesture();
    Hold({value});
    SetValueAndUpdate(true, true, next);
    EndGesture();
}

void CControl::TakeNumber(float number) {
    if (value == nullptr) return;
    ChangeByUser(number);
    ShowValue();
}

void CControl::ReturnToDefault() {
    if (defaultValue && enabled) TakeNumber(*defaultValue);
}

void CControl::TurnByWheel(std::uint32_t word) {
    if (value == nullptr || !enabled) return;
    const float share = (word & kWheelControl) != 0 ? 0.001F : 0.01F;
    ChangeByUser(std::clamp(ValueNow() + NotchesOf(word) * share * (maximum - minimum), minimum, maximum));
    ShowValue();
}

void CControl::ShowValue() {
    if (value != nullptr) owner.ShowBubble(*this, ValueText());
}

EState CControl::PlainState() const noexcept {
    if (!enabled) return EState::kDisabled;
    if (pressed) return EState::kPressed;
    return hovered ? EState::kHover : EState::kNormal;
}

CTicked::CTicked(CWinControl& window) : tickWindow(window) { tickWindow.AddTicked(*this); }

CTicked::~CTicked() { tickWindow.RemoveTicked(*this); }

CPainted::CPainted(CWinControl& window, const CControl& painted) : paintWindow(window), control(painted) {
    window.AddPainted(*this);
}

CPainted::~CPainted() { paintWindow.RemovePainted(*this); }

}  // namespace quib
