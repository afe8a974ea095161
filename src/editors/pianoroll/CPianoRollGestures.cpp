// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CPianoRollGestures.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "controls/VirtualKeys.h"
#include "model/edits/NoteEdits.h"
#include "model/edits/NoteSnap.h"
#include "model/edits/PatternEdits.h"

namespace quib {

namespace {
constexpr int kShake = 3;            // pixels that a click may move
constexpr int kLongestEnd = 8;       // pixels of a note that resize it
constexpr int kLeastResizable = 12;  // pixels
constexpr int kLimitMark = 9;        // pixels
constexpr int kWheelRows = 3;        // a notch
constexpr int kWheelBeats = 1;
constexpr int kVelocityNotch = 4;
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

// --- Drags --------------------------------------------------------------------------------------------

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

// --- Wheel and keys -----------------------------------------------------------------------------------

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
