// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CMouseRouter.h"

#include <algorithm>
#include <utility>

#include "controls/CInfoCtrl.h"
#include "controls/CWinControl.h"

namespace quib {

namespace {
constexpr std::uint64_t kDebounce = 20;  // milliseconds
constexpr int kMiddleButton = 2;
}  // namespace

CMouseRouter::Hit CMouseRouter::Find(int x, int y) const {
    for (const auto& top : owner.Controls()) {
        if (CControl* const control = top->HitTest(x, y)) return {top.get(), control};
    }
    return {};
}

void CMouseRouter::Move(int x, int y) {
    if (x == lastX && y == lastY) return;
    lastX = x;
    lastY = y;
    if (captured != nullptr) return Hover(*captured, x, y);
    Track(x, y);
}

void CMouseRouter::Track(int x, int y) {
    CControl* const under = Find(x, y).control;
    if (hovered != under) LeaveHovered();
    if (under == nullptr) return;
    const bool entered = hovered == nullptr;
    hovered = under;
    hovered->hovered = true;
    if (entered && under->hoverLook) under->Update(false, true);
    Hover(*under, x, y);
}

void CMouseRouter::Hover(CControl& control, int x, int y) {
    ShowInfo(control);
    control.OnMouseMove(x, y);
}

void CMouseRouter::ShowInfo(CControl& control) {
    const int number = control.InfoNumber();
    if (number < 0 && control.infoText.isEmpty()) return;
    if (!InfoTextsAreShown(owner.Settings(), 1)) return;
    CInfoCtrl* const panel = control.infoPanel != nullptr ? control.infoPanel : owner.infoPanel;
    if (panel == nullptr) return;
    if (number >= 0) {
        panel->Show(number);
    } else {
        panel->Show(control.infoText);
    }
}

void CMouseRouter::LeaveHovered() {
    if (hovered == nullptr) return;
    CControl& left = *hovered;
    hovered = nullptr;
    left.hovered = false;
    if (left.hoverLook) left.Update(false, true);
    left.BroadcastLeave();
    if (left.infoPanel != nullptr) left.infoPanel->Clear();
    owner.HideBubble();
}

void CMouseRouter::Leave() {
    lastX = lastY = -1;
    if (captured == nullptr || !captured->pressed) LeaveHovered();
}

// By the times of the events: a window that was busy meanwhile gets a release and the next press at once.
bool CMouseRouter::Press(int button, int x, int y, std::uint64_t time) {
    if (time != 0 && lastRelease != 0 && time - lastRelease < kDebounce) return false;
    const Hit hit = Find(x, y);
    if (button == kMiddleButton && (hit.control == nullptr || !hit.control->takesMiddleButton)) return false;
    captured = nullptr;
    owner.Keys().MouseAt(hit.control);
    if (hit.control != nullptr) Click(hit, button, x, y);
    return true;
}

// What moves over the control with the mouse has to know the place too.
void CMouseRouter::ClickOn(CControl& control, int button, QPoint point) {
    CControl* top = &control;
    while (top->Parent() != nullptr) top = top->Parent();
    keyed = &control;
    control.OnMouseMove(point.x(), point.y());
    Click({top, &control}, button, point.x(), point.y());
    ReleasePressed(button, point.x(), point.y());
    captured = nullptr;
    if (CControl* const left = std::exchange(keyed, nullptr); left != nullptr && left != hovered) left->OnMouseLeave();
}

// What is called here may remove the control, or all of them.
void CMouseRouter::Click(const Hit& hit, int button, int x, int y) {
    clicked = hit;
    CControl& control = *hit.control;
    if (control.captureOnClick) captured = &control;
    const bool alternative = button != control.primaryButton || control.alternativeClickAlways;
    if (owner.IsResetHeld() && !alternative && control.HasDefault()) {
        control.ReturnToDefault();
    } else if (!alternative || !TakeAlternativePath(control)) {
        control.pressed = true;
        control.BeginGesture();
        control.OnLButtonDown(x, y, button);
        if (clicked.control != nullptr && control.afterClick) control.afterClick(control);
    }
    if (clicked.top != nullptr && owner.onControlClicked) owner.onControlClicked(*clicked.top);
    clicked = {};
}

bool CMouseRouter::TakeAlternativePath(CControl& control) {
    if (control.onAlternativeClick) {
        control.onAlternativeClick(control);
    } else if (control.popupMenu >= 0) {
        owner.ShowPopupMenu(control);
    } else if (!control.entryTitle.isEmpty()) {
        owner.RunManualEntry(control);
    } else {
        return false;
    }
    return true;
}

void CMouseRouter::Release(int button, int x, int y, std::uint64_t time) {
    // The others know nothing of this button: their own one may be down.
    if (button == kMiddleButton && (captured == nullptr || !captured->takesMiddleButton)) return;
    lastRelease = time;
    ReleasePressed(button, x, y);
    // The mouse may be over another control by now.
    if (std::exchange(captured, nullptr) != nullptr && Find(x, y).control != hovered) Track(x, y);
}

void CMouseRouter::ReleasePressed(int button, int x, int y) {
    released.clear();
    for (const auto& control : owner.Controls()) CollectPressed(*control);
    for (std::size_t index = 0; index < released.size(); ++index) {
        CControl* const control = released[index];
        if (control == nullptr) continue;  // gone since
        control->pressed = false;
        owner.HideBubble();
        control->OnLButtonUp(x, y, button);
        if (released[index] != nullptr) control->EndGesture();
    }
    released.clear();
}

void CMouseRouter::CollectPressed(CControl& control) {
    for (const auto& child : control.Children()) CollectPressed(*child);
    if (control.pressed) released.push_back(&control);
}

void CMouseRouter::DoubleClick(int x, int y, std::uint64_t time) {
    const Hit hit = Find(x, y);
    if (hit.control == nullptr) return;
    CControl& control = *hit.control;
    const bool hasEntry = !control.entryTitle.isEmpty();
    if (hasEntry) owner.RunManualEntry(control);
    control.OnDoubleClick(x, y);
    if (hasEntry) return;
    if (control.doubleClickResets && control.HasDefault()) {
        control.ReturnToDefault();
    } else if (control.doubleClickIsClick) {
        Press(0, x, y, time);
    }
}

void CMouseRouter::Wheel(std::uint32_t word) {
    if (CControl* const control = Find(lastX, lastY).control) control->OnMouseWheel(lastX, lastY, word);
}

void CMouseRouter::Forget(const CControl& control) noexcept {
    if (hovered == &control) hovered = nullptr;
    if (captured == &control) captured = nullptr;
    if (keyed == &control) keyed = nullptr;
    if (clicked.control == &control) clicked.control = nullptr;
    if (clicked.top == &control) clicked.top = nullptr;
    std::replace_if(
        released.begin(), released.end(), [&control](const CControl* known) { return known == &control; }, nullptr);
}

}  // namespace quib
