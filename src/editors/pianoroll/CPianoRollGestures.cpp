// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CPianoRollGestures.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "model/edits/NoteEdits.h"
#include "model/edits/PatternEdits.h"

namespace quib {

namespace {
constexpr int kLongestEnd = 8;       // pixels of a note that resize it
constexpr int kLeastResizable = 12;  // pixels
constexpr int kLimitMark = 9;        // pixels
constexpr const char* kAddNote = "Add note";
}  // namespace

CPianoRollGestures::CPianoRollGestures(CPianoRollEdit& edited, PianoRollView& shown, PianoRollOptions& settings,
                                       IPianoRollSurface& drawn)
    : edit(edited), view(shown), options(settings), surface(drawn) {}

bool CPianoRollGestures::IsInGrid(int x, int y) const noexcept {
    return y >= PianoRollView::kHeaderHeight && x >= view.GridLeft();
}

std::optional<Marquee> CPianoRollGestures::ShownMarquee() const noexcept {
    if (mode != EMode::kMarquee || !moved) return std::nullopt;
    return Marquee{pressX, pressY, mouseX, mouseY};
}

// --- Presses ------------------------------------------------------------------------------------------

void CPianoRollGestures::Press(EMouseButton pressed, int x, int y) {
    if (IsBusy()) Release(mouseX, mouseY);
    edit.Settle();
    edit.host.Hold(true);
    button = pressed;
    pressX = mouseX = x;
    pressY = mouseY = y;
    moved = resizeByKey = copyByKey = false;
    hit.reset();
    mode = EMode::kIdle;
    if (button == EMouseButton::kMiddle) {
        mode = EMode::kPan;
        panScroll = view.time.Scroll();
        panKeyScroll = view.KeyScroll();
        surface.SetCursor(ERollCursor::kPan);
    } else if (y < PianoRollView::kHeaderHeight) {
        PressHeader(button, x);
    } else if (x < view.GridLeft()) {
        PressStrip(button, x, y);
    } else {
        PressGrid(button, x, y);
    }
}

void CPianoRollGestures::PressHeader(EMouseButton pressed, int x) {
    if (pressed != EMouseButton::kLeft) return;
    mode = EMode::kLength;
    edit.Begin();
    DragLength(x);
}

void CPianoRollGestures::DragLength(int x) {
    const int place = x - view.GridLeft() + view.time.Scroll();
    const int step = place / view.time.StepWidth();
    if (step < 0 || step >= kMaximumStepCount || step + 1 == edit.State().pattern->StepCount()) return;
    edit.Preview(SetStepCount(edit.Start(), step + 1));
    edit.host.SetLength(step + 1);
}

int CPianoRollGestures::LimitAt(int x, int y) const noexcept {
    if (view.IsDrums() || x < view.GridLeft() - kLimitMark || x >= view.GridLeft()) return 0;
    const int lower = view.FootOf(options.lowerLimit);
    const int upper = view.FootOf(options.upperLimit);
    if (options.lowerLimit > 0 && y >= lower && y < lower + kLimitMark) return 1;
    return options.upperLimit <= kHighestKey && y < upper && y >= upper - kLimitMark ? 2 : 0;
}

void CPianoRollGestures::PressStrip(EMouseButton pressed, int x, int y) {
    if (pressed != EMouseButton::kLeft) return;  // the menu of the row comes with the release
    if (const int limit = LimitAt(x, y); limit != 0) {
        mode = EMode::kLimit;
        upperLimit = limit == 2;
        limitBefore = upperLimit ? options.upperLimit : options.lowerLimit;
        return;
    }
    const int key = view.KeyAt(y);
    if (edit.host.TakeKey(key)) return;
    if (view.IsDrums()) {
        options.focusedKey = key;
        edit.host.RowFocused(key);
    }
    mode = EMode::kStrip;
    Sound(key, options.velocity);
}

void CPianoRollGestures::PressGrid(EMouseButton pressed, int x, int y) {
    hit = view.NoteAt(edit.Index(), x, y);
    if (view.IsDrums() && view.RowAt(y) >= 0) options.focusedKey = view.KeyAt(y);
    if (hit) {
        PressNote(pressed, *hit);
    } else {
        PressEmpty(pressed, x, y);
    }
    surface.MarksChanged();
}

void CPianoRollGestures::PressNote(EMouseButton pressed, std::uint32_t note) {
    if (IsSelected(edit.State(), note)) {
        if (pressed == EMouseButton::kLeft && control) return edit.Select(ToggleSelected(edit.State(), note));
    } else {
        const NoteSelection one = {note};
        edit.Select(control ? AddToSelection(edit.State(), one) : Select(edit.State(), one));
    }
    mode = pressed == EMouseButton::kLeft && IsOverEnd(note, pressX) ? EMode::kResize : EMode::kMove;
    BeginDrag();
}

void CPianoRollGestures::BeginDrag() {
    edit.Begin();
    anchor = edit.State().Notes()[*hit];
    if (button == EMouseButton::kRight) surface.SetCursor(ERollCursor::kMoveAll);
    // A silent note stays silent.
    if (button == EMouseButton::kLeft && anchor.velocity > 0) Sound(anchor.key, anchor.velocity);
    surface.ShowNote(&anchor);
}

bool CPianoRollGestures::IsOverEnd(std::uint32_t note, int x) const {
    const std::optional<NoteBox> box = view.BoxOf(edit.State().Notes()[note]);
    if (view.IsDrums() || !box || box->Width() < kLeastResizable) return false;
    return x >= box->right - std::min<double>(kLongestEnd, box->Width() / 3);
}

void CPianoRollGestures::PressEmpty(EMouseButton pressed, int x, int y) {
    const bool marquee = pressed == EMouseButton::kRight || shift;
    if (!control) {
        const bool wasEmpty = edit.State().selection.empty();
        edit.SelectNone();
        if (!wasEmpty && !marquee) return;
    } else if (!marquee && !edit.State().selection.empty()) {
        return;
    }
    if (!marquee) return AddNoteAt(x, y);
    mode = EMode::kMarquee;
    marqueeBase = edit.State().selection;
    surface.SetCursor(ERollCursor::kCross);
}

float CPianoRollGestures::NewLength() const noexcept {
    const auto raster = static_cast<float>(view.time.SnapSteps());
    const float cell = raster > 0 ? raster : 1;
    return view.IsDrums() || options.length <= 0 ? cell : options.length;
}

void CPianoRollGestures::AddNoteAt(int x, int y) {
    const int row = view.RowAt(y);
    if (row < 0 || row >= view.Rows().Count()) return;
    const double step = view.StepAt(x + 0.5);
    const float cell = view.time.SnapDown(step);
    const double raster = view.time.SnapSteps();
    const int key = view.Rows().KeyOf(row);
    // A hit of a drum is as long as its cell, whatever its note says.
    const bool isDrums = view.IsDrums();
    if (!isDrums && edit.Index().IsCellCovered(cell, raster, key)) return;
    if (isDrums && view.NoteAt(edit.Index(), static_cast<int>(std::lround(view.XOf(static_cast<double>(cell)))), y))
        return;
    mode = EMode::kFresh;
    anchor = {cell, NewLength(), key, options.velocity};
    edit.Begin();
    edit.Preview(AddNote(edit.State(), anchor));
    Sound(key, anchor.velocity);
    surface.ShowNote(&anchor);
}

// --- Ends ---------------------------------------------------------------------------------------------

const char* CPianoRollGestures::DragName() const noexcept {
    if (mode == EMode::kResize || resizeByKey) return "Resize notes";
    return copyByKey ? "Copy notes" : "Move notes";
}

void CPianoRollGestures::Release(int x, int y) {
    if (!IsBusy()) return;
    mouseX = x;
    mouseY = y;
    const EMode ended = std::exchange(mode, EMode::kNone);
    const bool isClick = !moved;
    switch (ended) {
        case EMode::kFresh:
            if (moved) {
                const Note& note = edit.State().Notes().back();
                if (note.length > anchor.length) options.length = note.length;
                edit.Finish(kAddNote);
            } else {
                edit.FinishLater(kAddNote);
            }
            break;
        case EMode::kMove:
        case EMode::kResize:
            mode = ended;
            edit.Finish(DragName());
            mode = EMode::kNone;
            break;
        case EMode::kLength:
            edit.Finish("Pattern length");
            break;
        case EMode::kLimit:
            edit.host.SetKeyLimit(upperLimit, std::clamp(view.KeyAt(y), 0, kHighestKey), true);
            break;
        default:
            break;
    }
    EndMouse();
    if (button != EMouseButton::kRight || !isClick || pressY < PianoRollView::kHeaderHeight) return;
    if (IsInGrid(pressX, pressY)) {
        edit.host.ShowMenu(x, y);
    } else {
        edit.host.ShowRowMenu(view.KeyAt(pressY));
    }
}

void CPianoRollGestures::EndMouse() {
    mode = EMode::kNone;
    edit.host.Hold(false);
    Silence();
    surface.ShowNote(nullptr);
    surface.SetCursor(CursorAt(mouseX, mouseY));
    surface.MarksChanged();
}

void CPianoRollGestures::Cancel() {
    if (mode == EMode::kLimit) edit.host.SetKeyLimit(upperLimit, limitBefore, true);
    if (IsBusy()) {
        edit.Cancel();
    } else {
        edit.Settle();
    }
    hit.reset();
    edit.SelectNone();
    EndMouse();
}

void CPianoRollGestures::DoubleClick(int x, int y) {
    hit = view.NoteAt(edit.Index(), x, y);
    // The first click has added what the second one removes: nothing has happened.
    if (edit.Pending() == kAddNote && hit == edit.State().Notes().size() - 1) {
        edit.Cancel();
    } else {
        edit.Settle();
        if (!edit.State().selection.empty()) {
            edit.Apply(RemoveSelected(edit.State()), "Delete notes");
        } else if (hit) {
            const NoteSelection one = {*hit};
            edit.Apply(RemoveNotes(edit.State(), one), "Delete notes");
        }
    }
    hit.reset();
    edit.SelectNone();
    surface.MarksChanged();
}

}  // namespace quib
