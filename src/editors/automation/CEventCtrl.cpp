// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CEventCtrl.h"

#include <QGuiApplication>
#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"
#include "editors/base/WindowKeys.h"
#include "model/edits/LaneCurve.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kWheelPixels = 60;  // pixels of a notch

}  // namespace

CEventCtrl::CEventCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                       const CLaneCatalog& lanes, CTimeGrid* sharedTime)
    : CPaneCtrl(window, number, left, top, newWidth, newHeight), catalog(lanes), view(sharedTime) {
    takesWheel = true;
    doubleClickIsClick = false;
    view.Resize(newWidth, newHeight);
    edit.onShown = [this] {
        hovered.reset();
        Refresh();
        if (onState) onState();
    };
}

void CEventCtrl::ShowLane(std::optional<LaneEntry> next, const LaneLimits& limits) {
    lane = std::move(next);
    view.limits = limits;
    edit.limits = limits;
    enabled = lane.has_value();
}

void CEventCtrl::Resize(int newWidth, int newHeight) {
    SetSize(newWidth, newHeight);
    view.Resize(newWidth, newHeight);
}

void CEventCtrl::ViewMoved() {
    Refresh();
    if (onView) onView();
}

QRgb CEventCtrl::Accent() const {
    if (recording) return Palette().Colour(QStringLiteral("record"));
    return Palette().Accent(lane ? CLaneCatalog::SectionOf(lane->key) : ESection::kMix);
}

void CEventCtrl::SetPlayhead(double step) {
    if (step == playhead) return;
    const double before = playhead;
    playhead = step;
    if (step >= 0 && !gestures.IsBusy() && view.time.Follow(step)) return ViewMoved();
    for (const double place : {before, step}) {
        if (place >= 0) DrawPart(QRect(static_cast<int>(std::floor(view.XOf(place))) - 7, 0, 15, Height()));
    }
}

void CEventCtrl::ShowBubble() {
    const LaneState& state = edit.State();
    const auto index = gestures.IsBusy() && !state.selection.empty() ? std::optional(state.selection.front()) : hovered;
    if (!index || *index >= state.points->size() || !lane) return Owner().HideBubble();
    const Point& point = (*state.points)[*index];
    const QPointF place = PlaceOf(point);
    Owner().ShowBubble(
        QRect(static_cast<int>(place.x()) - 6, static_cast<int>(place.y()) - 6, 12, 12),
        Text("Time: %1  Value: %2").arg(static_cast<double>(point.x), 0, 'f', 2).arg(catalog.ValueText(*lane, point.y)),
        Accent());
}

// --- Events -----------------------------------------------------------------------------------------------

LaneHand CEventCtrl::Hand() const {
    const bool shift = Owner().IsFine() && !Owner().IsControlHeld();
    return {shift, Owner().IsControlHeld(), Owner().IsAltHeld()};
}

void CEventCtrl::OnMouseMove(int px, int py) {
    if (locating) return onLocate(std::max(0.0, view.StepAt(px - X())));
    if (gestures.IsBusy()) {
        gestures.Move(px - X(), py - Y(), Hand());
        return ShowBubble();
    }
    const bool inside = lane && px - X() >= view.scaleWidth && py - Y() >= view.headerHeight;
    const auto next = inside ? view.PointAt(edit.State(), px - X(), py - Y()) : std::nullopt;
    if (next == hovered) return;
    hovered = next;
    Refresh();
    ShowBubble();
}

void CEventCtrl::OnLButtonDown(int px, int py, int button) {
    if (px - X() < view.scaleWidth) return;
    if (py - Y() < view.headerHeight) {
        locating = button == 0 && onLocate;
        if (locating) onLocate(std::max(0.0, view.StepAt(px - X())));
        return;
    }
    if (!lane) return;
    gestures.Press(px - X(), py - Y(), button == 1, Hand());
    ShowBubble();
}

void CEventCtrl::OnLButtonUp(int px, int py, int /*button*/) {
    locating = false;
    gestures.Release(px - X(), py - Y());
    Refresh();
}

void CEventCtrl::OnDoubleClick(int px, int py) {
    if (lane && px - X() >= view.scaleWidth && py - Y() >= view.headerHeight) gestures.DoubleClick(px - X(), py - Y());
}

void CEventCtrl::OnMouseWheel(int px, int py, std::uint32_t word) {
    const float notches = NotchesOf(word);
    const bool isValue = wheelIsValue && (word & (kWheelControl | kWheelShift)) == 0;
    if (gestures.IsBusy() || Owner().IsAltHeld() || isValue) return gestures.Wheel(px - X(), py - Y(), notches);
    const int anchor = px - X() - view.scaleWidth;
    bool moved = false;
    if ((word & kWheelControl) != 0) {
        moved = notches > 0 ? view.time.ZoomIn(anchor) : view.time.ZoomOut(anchor);
    } else {
        moved = view.time.ScrollTo(view.time.Scroll() - static_cast<int>(std::lround(notches * kWheelPixels)));
    }
    if (moved) ViewMoved();
}

void CEventCtrl::OnMouseLeave() {
    if (!hovered) return;
    hovered.reset();
    Refresh();
}

WindowKeys AutomationKeys() {
    return {{Qt::Key_Up, TextKey("Moves the selected points"), WindowKey::EKind::kArrows},
            {Qt::SHIFT | Qt::Key_Up, TextKey("The same finely"), WindowKey::EKind::kArrows},
            {Qt::Key_Tab, TextKey("Next point")},
            {Qt::SHIFT | Qt::Key_Tab, TextKey("Previous point")},
            {Qt::Key_Delete, TextKey("Removes the selected points")}};
}

void CEventCtrl::OnKeyDown(int key) {
    if (!takesKeys) return;
    const bool fine = Owner().IsAltHeld() || Owner().IsFine();
    switch (key) {
        case virtualKey::kEscape:
            gestures.Cancel();
            return;
        case virtualKey::kDelete:
            return gestures.Delete();
        case virtualKey::kLeft:
            return gestures.Nudge(-1, 0, fine);
        case virtualKey::kRight:
            return gestures.Nudge(1, 0, fine);
        case virtualKey::kUp:
            return gestures.Nudge(0, 1, fine);
        case virtualKey::kDown:
            return gestures.Nudge(0, -1, fine);
        case virtualKey::kTab: {
            const LaneState& state = edit.State();
            if (state.points->empty()) return;
            const auto count = static_cast<std::uint32_t>(state.points->size());
            const std::uint32_t now = state.selection.empty() ? count - 1 : state.selection.front();
            return edit.Select(Select(state, {(now + (Owner().IsFine() ? count - 1 : 1)) % count}));
        }
        default:
            return;
    }
}

}  // namespace quib
