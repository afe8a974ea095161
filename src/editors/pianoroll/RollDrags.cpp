// SPDX-License-Identifier: GPL-3.0-or-later
// What the mouse does in a piano roll between press and release.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "editors/pianoroll/CPianoRollGestures.h"
#include "model/edits/NoteEdits.h"
#include "model/edits/NoteSnap.h"
#include "model/edits/PatternEdits.h"

namespace quib {

namespace {

constexpr int kShake = 3;          // pixels that a click may move
constexpr int kSlowestScroll = 6;  // pixels a tick at an edge
constexpr int kFastestScroll = 60;

// How far to scroll for a place outside of [least, most]; 0 inside.
int WayBeyond(int place, int least, int most) {
    const int beyond = place < least ? place - least : place > most ? place - most : 0;
    if (beyond == 0) return 0;
    const int speed = std::min(kFastestScroll, kSlowestScroll + std::abs(beyond) / 2);
    return beyond < 0 ? -speed : speed;
}

}  // namespace

void CPianoRollGestures::Move(int x, int y) {
    mouseX = x;
    mouseY = y;
    if (!moved && std::max(std::abs(x - pressX), std::abs(y - pressY)) >= kShake) {
        moved = true;
        edit.Settle();
    }
    switch (mode) {
        case EMode::kNone:
            return surface.SetCursor(CursorAt(x, y));
        case EMode::kFresh:
        case EMode::kMove:
        case EMode::kResize:
            if (moved) Drag(x, y);
            return;
        case EMode::kMarquee:
            if (moved) DragMarquee();
            return;
        case EMode::kPan:
            if (view.time.ScrollTo(panScroll + pressX - x) | view.ScrollKeysTo(panKeyScroll + pressY - y)) {
                surface.ViewMoved();
            }
            return;
        case EMode::kLength:
            return DragLength(x);
        case EMode::kStrip:
            return Sound(view.KeyAt(y), options.velocity);
        case EMode::kLimit:
            edit.host.SetKeyLimit(upperLimit, std::clamp(view.KeyAt(y), 0, kHighestKey), false);
            return surface.MarksChanged();
        case EMode::kIdle:
            return;
    }
}

// While a drag stands beyond an edge the view goes on, and the place of the press with it.
void CPianoRollGestures::ScrollAtEdge() {
    if (!moved || (!IsDragging() && mode != EMode::kMarquee)) return;
    const bool level = mode == EMode::kResize || resizeByKey;
    const int right = WayBeyond(mouseX, view.GridLeft(), view.Width() - 1);
    const int down = level ? 0 : WayBeyond(mouseY, PianoRollView::kHeaderHeight, view.Height() - 1);
    const int scroll = view.time.Scroll();
    const int keyScroll = view.KeyScroll();
    bool changed = right != 0 && view.time.ScrollTo(scroll + right);
    changed = (down != 0 && view.ScrollKeysTo(keyScroll + down)) || changed;
    if (!changed) return;
    pressX -= view.time.Scroll() - scroll;
    pressY -= view.KeyScroll() - keyScroll;
    surface.ViewMoved();
    Move(mouseX, mouseY);
}

void CPianoRollGestures::Drag(int x, int y) {
    // The document has changed under the hand.
    if (!edit.IsOpen()) return EndMouse();
    if (mode == EMode::kFresh) {
        edit.Preview(FreshNote(x, y));
    } else if (mode == EMode::kResize || resizeByKey) {
        edit.Preview(Resized(x));
    } else {
        edit.Preview(Dragged(x, y));
    }
    const std::vector<Note>& notes = edit.State().Notes();
    // Copies and a fresh note stand at the end of the list.
    std::size_t shown = mode == EMode::kFresh ? notes.size() - 1 : *hit;
    if (notes.size() > edit.Start().Notes().size() && mode != EMode::kFresh) {
        const NoteSelection& taken = edit.Start().selection;
        const auto place = std::lower_bound(taken.begin(), taken.end(), *hit) - taken.begin();
        shown = notes.size() - taken.size() + static_cast<std::size_t>(place);
    }
    const Note note = notes[std::min(shown, notes.size() - 1)];
    if (sounding >= 0 && note.key != sounding) Sound(note.key, note.velocity);
    surface.ShowNote(&note);
}

int CPianoRollGestures::KeyMoved(int y) const {
    const int row = view.Rows().RowOf(anchor.key) + view.RowAt(y) - view.RowAt(pressY);
    return view.Rows().KeyOf(row) - anchor.key;
}

NoteState CPianoRollGestures::Dragged(int x, int y) const {
    const auto way = static_cast<float>(view.StepAt(x) - view.StepAt(pressX));
    // Straight up or down leaves a note off the raster where it is.
    const bool isStill = std::abs(x - pressX) < kShake;
    const float steps = isStill ? 0 : SnappedMove(anchor.position, way, Raster());
    return copyByKey ? MoveCopies(edit.Start(), steps, KeyMoved(y)) : MoveNotes(edit.Start(), steps, KeyMoved(y));
}

NoteState CPianoRollGestures::Resized(int x) const {
    const auto way = static_cast<float>(view.StepAt(x) - view.StepAt(pressX));
    const double raster = Raster();
    const float steps = SnappedMove(anchor.position + anchor.length, way, raster);
    return ResizeNotes(edit.Start(), steps, std::max(kShortestNote, static_cast<float>(raster)));
}

NoteState CPianoRollGestures::FreshNote(int x, int y) const {
    Note note = anchor;
    note.key = anchor.key + KeyMoved(y);
    if (!view.IsDrums() && x - pressX >= kShake) {
        const auto end = static_cast<float>(view.StepAt(x));
        note.length = std::max(anchor.length, SnapUp(end, Raster()) - anchor.position);
    }
    return AddNote(edit.Start(), note);
}

void CPianoRollGestures::DragMarquee() {
    const NoteSelection found = view.NotesBetween(edit.Index(), pressX, pressY, mouseX, mouseY);
    edit.Select(AddToSelection(Select(edit.State(), marqueeBase), found));
    surface.MarksChanged();
}

}  // namespace quib
