// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CKeyFocus.h"

#include <QKeyEvent>
#include <algorithm>
#include <array>
#include <utility>

#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kRow = 22;   // pixels; what is nearer stands in one line
constexpr int kPage = 10;  // notches
constexpr int kAside = 3;  // a pixel beside the way counts as so many along it

constexpr std::array kKeys = {
    FocusKey{Qt::Key_Tab, EFocusKey::kNext, TextKey("Next control")},
    FocusKey{Qt::SHIFT | Qt::Key_Backtab, EFocusKey::kPrevious, TextKey("Previous control")},
    FocusKey{Qt::CTRL | Qt::Key_Tab, EFocusKey::kNextSection, TextKey("Next section or strip; out of a grid")},
    FocusKey{Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, EFocusKey::kPreviousSection,
             TextKey("Previous section or strip; out of a grid")},
    FocusKey{Qt::CTRL | Qt::Key_Up, EFocusKey::kMoveArrow, TextKey("To the control in the direction of the arrow")},
    FocusKey{Qt::Key_Up, EFocusKey::kArrow, TextKey("Changes a value, chooses a cell, else moves on")},
    FocusKey{Qt::SHIFT | Qt::Key_Up, EFocusKey::kFineArrow, TextKey("Changes a value finely")},
    FocusKey{Qt::Key_PageUp, EFocusKey::kPage, TextKey("Changes a value in large steps")},
    FocusKey{Qt::Key_Home, EFocusKey::kEnd, TextKey("To the lowest or the highest value, the first or the last cell")},
    FocusKey{Qt::Key_Return, EFocusKey::kEnter, TextKey("Presses, switches, or opens the entry of a value")},
    FocusKey{Qt::Key_Backspace, EFocusKey::kDefault, TextKey("Back to the default")},
    FocusKey{Qt::SHIFT | Qt::Key_F10, EFocusKey::kMenu, TextKey("Menu of the control, as the right button does")},
    FocusKey{Qt::Key_Escape, EFocusKey::kLeave, TextKey("Leaves the controls")},
};

// Keys that stand in the table by another one.
QKeyCombination Named(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    switch (event.key()) {
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Down:
            return QKeyCombination(modifiers, Qt::Key_Up);
        case Qt::Key_PageDown:
            return QKeyCombination(modifiers, Qt::Key_PageUp);
        case Qt::Key_End:
            return QKeyCombination(modifiers, Qt::Key_Home);
        case Qt::Key_Enter:
            return QKeyCombination(modifiers, Qt::Key_Return);
        case Qt::Key_Menu:
            return QKeyCombination(Qt::ShiftModifier, Qt::Key_F10);
        default:
            return QKeyCombination(modifiers, static_cast<Qt::Key>(event.key()));
    }
}

const FocusKey* RowOf(const QKeyEvent& event) {
    const auto found = std::ranges::find(kKeys, Named(event), &FocusKey::key);
    return found == kKeys.end() ? nullptr : &*found;
}

bool IsStop(const CControl& control) {
    switch (control.Role()) {
        case ERole::kButton:
        case ERole::kSwitch:
        case ERole::kSlider:
        case ERole::kMenu:
        case ERole::kChoice:
        case ERole::kField:
        case ERole::kMeter:
        case ERole::kArea:
            return control.enabled || control.IsUsefulDisabled();
        default:
            return false;
    }
}

void Collect(CControl& control, std::vector<CControl*>& stops) {
    if (!control.IsShown()) return;
    if (IsStop(control)) stops.push_back(&control);
    for (const auto& child : control.Children()) Collect(*child, stops);
}

bool StandsBefore(const CControl* left, const CControl* right) {
    const auto place = [](const CControl& control) {
        return std::pair((control.Y() + control.Height() / 2) / kRow, control.X());
    };
    return place(*left) < place(*right);
}

std::vector<CControl*> Sections(const CWinControl& window) {
    std::vector<CControl*> tops;
    for (const auto& top : window.Controls()) tops.push_back(top.get());
    std::ranges::stable_sort(tops, {}, [](const CControl* top) { return std::pair(top->Y(), top->X()); });
    return tops;
}

// A field for typing that lies over the controls.
bool FocusWidgetOf(const CWinControl& window) {
    for (QWidget* const child : window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (child->isWindow() || !child->isVisible() || (child->focusPolicy() & Qt::TabFocus) == 0) continue;
        child->setFocus(Qt::TabFocusReason);
        return true;
    }
    return false;
}

CControl& TopOf(CControl& control) {
    CControl* top = &control;
    while (top->Parent() != nullptr) top = top->Parent();
    return *top;
}

}  // namespace

std::span<const FocusKey> FocusKeys() { return kKeys; }

std::vector<CControl*> KeyStops(const CWinControl& window) {
    std::vector<CControl*> stops;
    for (CControl* const top : Sections(window)) {
        const auto from = static_cast<std::ptrdiff_t>(stops.size());
        Collect(*top, stops);
        std::stable_sort(stops.begin() + from, stops.end(), StandsBefore);
    }
    return stops;
}

void CKeyFocus::Forget(const CControl& gone) noexcept {
    if (control != &gone) return;
    control = nullptr;
    shown = false;
}

bool CKeyFocus::WouldTake(const QKeyEvent& event) const {
    const FocusKey* const row = RowOf(event);
    if (row == nullptr) return false;
    if (row->use == EFocusKey::kNextSection || row->use == EFocusKey::kPreviousSection) return true;
    return shown && control != nullptr && control->Role() != ERole::kArea;
}

bool CKeyFocus::Take(const QKeyEvent& event) {
    if (!WouldTake(event)) return false;
    Run(*RowOf(event), event);
    return true;
}

void CKeyFocus::Run(const FocusKey& row, const QKeyEvent& event) {
    const int key = event.key();
    const int right = key == Qt::Key_Right ? 1 : key == Qt::Key_Left ? -1 : 0;
    const int up = key == Qt::Key_Up ? 1 : key == Qt::Key_Down ? -1 : 0;
    switch (row.use) {
        case EFocusKey::kNext:
        case EFocusKey::kPrevious:
            if (Step(row.use == EFocusKey::kNext ? 1 : -1)) return;
            if (FocusWidgetOf(owner)) return Hide();
            StepSection(row.use == EFocusKey::kNext ? 1 : -1);
            return;
        case EFocusKey::kNextSection:
        case EFocusKey::kPreviousSection:
            StepSection(row.use == EFocusKey::kNextSection ? 1 : -1);
            return;
        case EFocusKey::kArrow:
        case EFocusKey::kFineArrow:
            return Arrow(right, up, row.use == EFocusKey::kFineArrow);
        case EFocusKey::kMoveArrow:
            return Move(right, up);
        case EFocusKey::kPage:
            return Turn(key == Qt::Key_PageUp ? kPage : -kPage, false);
        case EFocusKey::kEnd:
            if (control->PartCount() > 0) return Show(*control, key == Qt::Key_Home ? 0 : control->PartCount() - 1);
            return control->GoToEnd(key == Qt::Key_End);
        case EFocusKey::kEnter:
            return Activate();
        case EFocusKey::kDefault:
            return control->ResetPart(part);
        case EFocusKey::kMenu:
            return OpenMenu();
        case EFocusKey::kLeave:
            return Hide();
    }
}

// --- Moving -------------------------------------------------------------------------------------------------

bool CKeyFocus::Step(int way) {
    const std::vector<CControl*> stops = KeyStops(owner);
    if (stops.empty()) return false;
    const auto now = std::ranges::find(stops, control);
    if (now == stops.end()) {
        Show(way > 0 ? *stops.front() : *stops.back(), -1);
        return true;
    }
    const auto next = (now - stops.begin()) + way;
    if (next < 0 || next >= static_cast<std::ptrdiff_t>(stops.size())) return false;
    Show(*stops[static_cast<std::size_t>(next)], -1);
    return true;
}

// The first control of the next section that has any; from the last one to the first.
bool CKeyFocus::StepSection(int way) {
    const std::vector<CControl*> stops = KeyStops(owner);
    if (stops.empty()) return false;
    std::vector<CControl*> firsts;
    for (CControl* const stop : stops) {
        if (firsts.empty() || &TopOf(*firsts.back()) != &TopOf(*stop)) firsts.push_back(stop);
    }
    const auto count = static_cast<std::ptrdiff_t>(firsts.size());
    const auto now = control == nullptr ? firsts.end() : std::ranges::find_if(firsts, [this](CControl* first) {
        return &TopOf(*first) == &TopOf(*control);
    });
    const std::ptrdiff_t from = now == firsts.end() ? (way > 0 ? -1 : 0) : now - firsts.begin();
    Show(*firsts[static_cast<std::size_t>((from + way + count) % count)], -1);
    return true;
}

void CKeyFocus::Show(CControl& next, int wanted) {
    CControl* const before = control;
    if (before != nullptr) owner.BlitRectangle(owner.RingOf(Area()));
    control = &next;
    shown = true;
    part = next.PartCount() == 0 ? -1 : std::clamp(wanted, 0, next.PartCount() - 1);
    if (wanted < 0) part = next.PartCount() == 0 ? -1 : std::max(0, next.ChosenPart());
    if (part >= 0) next.RevealPart(part);
    owner.setFocus();
    owner.Reveal(next);
    if ((before == nullptr || &TopOf(*before) != &TopOf(next)) && owner.onControlClicked) {
        owner.onControlClicked(TopOf(next));
    }
    if (control == nullptr) return;
    owner.Mouse().ShowInfo(*control);
    owner.BlitRectangle(owner.RingOf(Area()));
    owner.Spoken().Focused();
}

// The nearest one on the side of the arrow, what stands beside the way counting for more.
void CKeyFocus::Move(int right, int up) {
    CControl* nearest = nullptr;
    int shortest = 0;
    const QRect from = Area();
    for (CControl* const stop : KeyStops(owner)) {
        const QRect to = stop->Rectangle();
        const int gap = right > 0   ? to.left() - from.right()
                        : right < 0 ? from.left() - to.right()
                        : up > 0    ? from.top() - to.bottom()
                                    : to.top() - from.bottom();
        if (stop == control || gap < -2) continue;
        const QPoint way = to.center() - from.center();
        const int aside = right != 0 ? std::max(0, std::abs(way.y()) - (to.height() + from.height()) / 2 + 4)
                                     : std::max(0, std::abs(way.x()) - (to.width() + from.width()) / 2 + 4);
        const int offset = right != 0 ? std::abs(way.y()) : std::abs(way.x());
        const int length = std::max(0, gap) * 2 + aside * 2 * kAside + offset / 4;
        if (nearest != nullptr && length >= shortest) continue;
        nearest = stop;
        shortest = length;
    }
    if (nearest != nullptr) Show(*nearest, -1);
}

void CKeyFocus::MouseAt(CControl* pressed) {
    Hide();
    if (pressed != nullptr && IsStop(*pressed)) control = pressed;
}

void CKeyFocus::Hide() {
    if (!shown) return;
    const QRect area = Area();
    shown = false;
    owner.BlitRectangle(owner.RingOf(area));
    owner.HideBubble();
}

QRect CKeyFocus::Area() const {
    if (!shown || control == nullptr || !control->IsShown()) return {};
    const bool hasPart = part >= 0 && part < control->PartCount();
    const QRect area = hasPart ? control->PartAt(part).area : control->Rectangle();
    return area.isEmpty() ? control->Rectangle() : area;
}

// --- Using ---------------------------------------------------------------------------------------------------

void CKeyFocus::Arrow(int right, int up, bool fine) {
    const bool isSlider = part >= 0 ? control->PartAt(part).isSlider : control->IsTurned();
    if (part >= 0 && right != 0) {
        const int next = part + right;
        if (next >= 0 && next < control->PartCount()) Show(*control, next);
    } else if (isSlider) {
        Turn(right + up, fine);
    } else {
        Move(right, up);
    }
}

void CKeyFocus::Turn(int notches, bool fine) {
    if (control->enabled) control->Turn(part, notches, fine);
    Tell();
}

void CKeyFocus::Activate() {
    acting = true;
    control->Activate(part);
    acting = false;
    Tell();
}

// That of the control, else of what it stands in.
void CKeyFocus::OpenMenu() {
    CControl* target = control;
    if (part < 0) {
        while (target != nullptr && !target->HasMenu()) target = target->Parent();
    }
    if (target == nullptr) return;
    const QRect area = target == control ? Area() : target->Rectangle();
    acting = true;
    owner.Mouse().ClickOn(*target, 1, area.center());
    acting = false;
    Tell();
}

void CKeyFocus::Tell() {
    if (control == nullptr) return;
    owner.BlitRectangle(owner.RingOf(Area()));
    owner.Spoken().Changed(*control);
}

}  // namespace quib
