// SPDX-License-Identifier: GPL-3.0-or-later
// Wheel and modifier keys of a piano roll's gestures, what they sound, and the pointer they show.
#include <algorithm>
#include <cmath>

#include "controls/VirtualKeys.h"
#include "editors/pianoroll/CPianoRollGestures.h"

namespace quib {

namespace {
constexpr int kWheelRows = 3;  // a notch
constexpr int kWheelBeats = 1;
constexpr int kVelocityNotch = 4;
}  // namespace

void CPianoRollGestures::Wheel(const WheelTurn& turn) {
    if (IsDragging()) return;
    if (turn.alt)
        return ChangeVelocityAt(turn.x, turn.y,
                                static_cast<int>(std::lround(turn.notches * static_cast<float>(kVelocityNotch))));
    CTimeGrid& time = view.time;
    bool changed = false;
    if (turn.control) {
        const bool in = turn.notches > 0;
        const int anchorX = std::max(0, turn.x - view.GridLeft());
        if (turn.shift) {
            changed = in ? view.ZoomKeysIn(turn.y) : view.ZoomKeysOut(turn.y);
        } else {
            changed = in ? time.ZoomIn(anchorX) : time.ZoomOut(anchorX);
        }
    } else if (turn.shift) {
        const double steps = kWheelBeats * time.meter.StepsPerBeat();
        changed =
            time.ScrollTo(time.Scroll() -
                          static_cast<int>(std::lround(static_cast<double>(turn.notches) * steps * time.StepWidth())));
    } else {
        changed = view.ScrollKeysTo(
            view.KeyScroll() -
            static_cast<int>(std::lround(turn.notches * static_cast<float>(kWheelRows * view.RowHeight()))));
    }
    if (changed) surface.ViewMoved();
}

void CPianoRollGestures::ChangeVelocityAt(int x, int y, int change) {
    if (change == 0) return;
    const std::optional<std::uint32_t> under =
        IsInGrid(x, y) ? view.NoteAt(edit.Index(), x, y) : std::optional<std::uint32_t>();
    edit.Accumulate(StressAt(edit.State(), under, change), "Velocity");
    if (under) surface.ShowNote(&edit.State().Notes()[*under]);
}

bool CPianoRollGestures::KeyDown(int key) {
    if (key == virtualKey::kEscape) {
        Cancel();
        return true;
    }
    const bool pressed = key == virtualKey::kShift || key == virtualKey::kControl || key == virtualKey::kAlt;
    if (!pressed) return false;
    if (!IsBusy()) edit.Settle();
    if (key == virtualKey::kShift) shift = resizeByKey = true;
    if (key == virtualKey::kControl) control = copyByKey = true;
    if (key == virtualKey::kAlt) alt = true;
    if (IsDragging() && moved) Drag(mouseX, mouseY);
    return false;
}

void CPianoRollGestures::KeyUp(int key) {
    if (key == virtualKey::kShift) shift = resizeByKey = false;
    if (key == virtualKey::kControl) control = copyByKey = false;
    if (key == virtualKey::kAlt) alt = false;
    const bool released = key == virtualKey::kShift || key == virtualKey::kControl || key == virtualKey::kAlt;
    if (released && IsDragging() && moved) Drag(mouseX, mouseY);
}

void CPianoRollGestures::Sound(int key, int velocity) {
    if (key == sounding) return;
    if (sounding >= 0) edit.host.Audition(sounding, 0, false);
    sounding = options.audition ? key : -1;
    if (sounding >= 0) edit.host.Audition(sounding, velocity, true);
}

ERollCursor CPianoRollGestures::CursorAt(int x, int y) const {
    if (!IsInGrid(x, y))
        return LimitAt(x, y) != 0 || y >= PianoRollView::kHeaderHeight ? ERollCursor::kHand : ERollCursor::kArrow;
    const std::optional<std::uint32_t> note = view.NoteAt(edit.Index(), x, y);
    if (!note) return ERollCursor::kArrow;
    return IsOverEnd(*note, x) ? ERollCursor::kResize : ERollCursor::kHand;
}

}  // namespace quib
