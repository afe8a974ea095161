// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CPianoRollCtrlEx.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"

namespace quib {

namespace {
constexpr int kPendingTicks = 12;  // of 40 ms: longer than a double click
constexpr int kHeader = PianoRollView::kHeaderHeight;
}  // namespace

CPianoRollCtrlEx::CPianoRollCtrlEx(CWinControl& window, std::uint32_t number, int left, int top, int newWidth,
                                   int newHeight, IPianoRollHost& host)
    : CDirectPaneCtrl(window, number, left, top, newWidth, newHeight),
      CTicked(window),
      edit(host),
      gestures(edit, view, options, *this),
      keys(edit, view, options, *this) {
    section = ESection::kPattern;
    takesWheel = true;
    takesMiddleButton = true;
    view.Resize(newWidth, newHeight);
    edit.onShown = [this](const NoteState& before) { NotesChanged(before); };
    UpdateExtent();
}

// --- Bubble and mouse pointer -------------------------------------------------------------------------

QString CPianoRollCtrlEx::BubbleText(const Note& note) {
    return QString::asprintf("Velocity: %i Time: %.2f Duration: %.2f", note.velocity,
                             static_cast<double>(note.position), static_cast<double>(note.length));
}

void CPianoRollCtrlEx::ShowNote(const Note* note) {
    if (note == nullptr) return Owner().HideBubble();
    const auto box = view.BoxOf(*note);
    if (!box) return;
    const QRect place = GridPart(box->left, box->top, box->right, box->bottom);
    if (!place.isEmpty()) Owner().ShowBubble(place.translated(X(), Y()), BubbleText(*note), colours.pattern);
}

void CPianoRollCtrlEx::SetCursor(ERollCursor next) {
    if (next == cursor) return;
    cursor = next;
    switch (next) {
        case ERollCursor::kHand:
            return Owner().setCursor(Qt::PointingHandCursor);
        case ERollCursor::kMoveAll:
            return Owner().setCursor(Qt::SizeAllCursor);
        case ERollCursor::kResize:
            return Owner().setCursor(Qt::SizeHorCursor);
        case ERollCursor::kCross:
            return Owner().setCursor(Qt::CrossCursor);
        case ERollCursor::kPan:
            return Owner().setCursor(Qt::ClosedHandCursor);
        case ERollCursor::kArrow:
            return Owner().unsetCursor();
    }
}

// --- Events -------------------------------------------------------------------------------------------

// The desktop may have taken the key itself.
void CPianoRollCtrlEx::SyncAlt() {
    if (Owner().IsAltHeld() == gestures.IsAltHeld()) return;
    if (Owner().IsAltHeld()) {
        gestures.KeyDown(virtualKey::kAlt);
    } else {
        gestures.KeyUp(virtualKey::kAlt);
    }
}

void CPianoRollCtrlEx::OnMouseMove(int px, int py) {
    SyncAlt();
    const int left = px - X();
    const int top = py - Y();
    keys.MouseAt(left, top);
    gestures.Move(left, top);
    TrackHover(gestures.IsBusy() ? -1 : left, top);
    if (onMousePlace && gestures.IsInGrid(left, top)) {
        onMousePlace(static_cast<float>(view.StepAt(left)), view.KeyAt(top));
    }
}

void CPianoRollCtrlEx::OnLButtonDown(int px, int py, int button) {
    SyncAlt();
    keys.HideCursor();
    TrackHover(-1, 0);
    gestures.Press(button == 0   ? EMouseButton::kLeft
                   : button == 1 ? EMouseButton::kRight
                                 : EMouseButton::kMiddle,
                   px - X(), py - Y());
}

void CPianoRollCtrlEx::OnLButtonUp(int px, int py, int /*button*/) { gestures.Release(px - X(), py - Y()); }

void CPianoRollCtrlEx::OnDoubleClick(int px, int py) {
    const bool inGrid = gestures.IsInGrid(px - X(), py - Y());
    doubleClickIsClick = !inGrid;
    if (inGrid) gestures.DoubleClick(px - X(), py - Y());
}

void CPianoRollCtrlEx::OnMouseWheel(int px, int py, std::uint32_t word) {
    gestures.Wheel({px - X(), py - Y(), NotchesOf(word), (word & kWheelShift) != 0, (word & kWheelControl) != 0,
                    Owner().IsAltHeld()});
}

void CPianoRollCtrlEx::OnMouseLeave() {
    wantedHover = {};
    keys.MouseAt(-1, -1);
    SetCursor(ERollCursor::kArrow);
}

void CPianoRollCtrlEx::Resize(int newWidth, int newHeight) {
    SetSize(newWidth, newHeight);
    view.Resize(newWidth, newHeight);
}

void CPianoRollCtrlEx::OnKeyDown(int key) {
    if (!gestures.KeyDown(key)) RepeatKey(key);
}

void CPianoRollCtrlEx::RepeatKey(int key) {
    if (takesKeys && keys.KeyDown(key, gestures)) MarksChanged();
}

void CPianoRollCtrlEx::OnKeyUp(int key) {
    gestures.KeyUp(key);
    keys.KeyUp(key, gestures);
}

// --- Hover and time -----------------------------------------------------------------------------------

void CPianoRollCtrlEx::TrackHover(int left, int top) {
    Hover next;
    if (gestures.IsInGrid(left, top) && top < Height() && left < Width() && view.RowAt(top) >= 0) {
        next.note = view.NoteAt(edit.Index(), left, top);
        next.cell = !next.note;
        next.row = view.RowAt(top);
        if (next.cell) next.step = view.time.SnapDown(view.StepAt(left + 0.5));
    }
    // What lights a note changes nothing else.
    if (next.note) next.row = 0;
    wantedHover = next;
    LightHover();
}

// One at a time: first what is dark again, with the next tick what is lit.
void CPianoRollCtrlEx::LightHover() {
    if (hover == wantedHover) return;
    const QRect lit = HoverPart();
    hover = lit.isEmpty() ? wantedHover : Hover();
    DrawPart(lit.isEmpty() ? HoverPart() : lit);
}

void CPianoRollCtrlEx::Tick() {
    if (edit.Pending() != nullptr && ++pendingTicks > kPendingTicks) edit.Settle();
    if (!IsShown()) return;
    gestures.ScrollAtEdge();
    keys.Tick();
    LightHover();
    if (options.sounding == drawnSounding) return;
    const KeySet changed = options.sounding ^ std::exchange(drawnSounding, options.sounding);
    for (int row = 0; row < view.Rows().Count(); ++row) {
        if (!changed.test(static_cast<std::size_t>(view.Rows().KeyOf(row)))) continue;
        const QRect place(0, view.YOfRow(row), view.GridLeft(), view.RowHeight());
        DrawPart(place.intersected(QRect(0, kHeader, view.GridLeft(), view.GridHeight())));
    }
}

}  // namespace quib
