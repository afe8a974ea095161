// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CPianoRollCtrlEx.h"

#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"
#include "editors/pianoroll/drawing/HeaderPainter.h"
#include "editors/pianoroll/drawing/StripPainter.h"

namespace quib {

namespace {
constexpr int kWidestRepaint = 64;  // pixels of width that hover and playhead redraw at most
constexpr int kPlayheadHalf = 7;    // pixels of its flag to each side
constexpr int kPendingTicks = 12;   // of 40 ms: longer than a double click
constexpr int kHeader = PianoRollView::kHeaderHeight;
}  // namespace

CPianoRollCtrlEx::CPianoRollCtrlEx(CWinControl& window, std::uint32_t number, int left, int top, int newWidth,
                                   int newHeight, IPianoRollHost& host)
    : CControl(window, number, left, top, newWidth, newHeight),
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

// --- Drawing ------------------------------------------------------------------------------------------

RollDrawing CPianoRollCtrlEx::Drawing(const QRect& part) {
    masks.SetScale(Canvas().Scale());
    return {Canvas(), view, options, colours, masks, QPoint(X(), Y()), part, edit.State().pattern->StepCount()};
}

void CPianoRollCtrlEx::Draw() { Paint(QRect(0, 0, Width(), Height())); }

void CPianoRollCtrlEx::DrawPart(const QRect& wanted) {
    const QRect part = wanted.intersected(QRect(0, 0, Width(), Height()));
    const QRect area = part.translated(X(), Y()).intersected(ShownRectangle());
    if (area.isEmpty() || !IsShown() || !Owner().HasBackBuffer()) return;
    Canvas().SetClip(area);
    Paint(part);
    Owner().BlitRectangle(area);
}

void CPianoRollCtrlEx::Paint(const QRect& part) {
    const QRect whole = ShownRectangle();
    const QRect area = part.translated(X(), Y()).intersected(whole);
    const RollDrawing drawing = Drawing(part);
    if (part.bottom() >= kHeader && part.right() >= view.GridLeft()) {
        const QRect grid(X() + view.GridLeft(), Y() + kHeader, Width() - view.GridLeft(), view.GridHeight());
        Canvas().SetClip(area.intersected(grid));
        PaintGrid(drawing);
    }
    if (part.bottom() >= kHeader && part.left() < view.GridLeft()) {
        Canvas().SetClip(area.intersected(QRect(X(), Y() + kHeader, view.GridLeft(), view.GridHeight())));
        if (view.IsDrums()) {
            DrawDrumStrip(drawing, usedKeys, gestures.SoundingKey());
        } else {
            DrawKeyStrip(drawing, gestures.SoundingKey());
        }
    }
    Canvas().SetClip(area);
    if (part.top() < kHeader) {
        DrawHeader(drawing, lengthFormat.arg(drawing.stepCount));
        Canvas().SetClip(area.intersected(QRect(X() + view.GridLeft() - kPlayheadHalf, Y(), Width(), kHeader)));
        DrawPatternEnd(drawing, 0, kHeader);
        const double place = view.XOf(playhead);
        if (playhead >= 0 && place >= view.GridLeft()) DrawPlayheadFlag(drawing, place);
        Canvas().SetClip(area);
    }
}

void CPianoRollCtrlEx::PaintGrid(const RollDrawing& drawing) {
    ground.Draw(drawing, usedKeys);
    notes.DrawGhosts(drawing);
    PaintHover(drawing);
    notes.Draw(drawing, edit.Index(), edit.State().selection, hover.note);
    DrawPatternEnd(drawing, kHeader, Height());
    PaintMarks(drawing);
    if (playhead >= 0) DrawPlayheadLine(drawing, view.XOf(playhead), kHeader, Height());
}

void CPianoRollCtrlEx::PaintMarks(const RollDrawing& drawing) const {
    if (gestures.ShownMarquee()) {
        const QRect area = MarqueePart();
        drawing.Fill(area.x(), area.y(), area.width(), area.height(), WithOpacity(colours.white, 0.08F));
        drawing.DashedFrame(area.x(), area.y(), area.width(), area.height(), 4, 3, colours.text);
    }
    if (const std::optional<EditCursor> mark = keys.ShownCursor()) {
        drawing.DashedFrame(drawnCursor.x(), drawnCursor.y(), drawnCursor.width(), drawnCursor.height(), 3, 2,
                            colours.text);
    }
}

void CPianoRollCtrlEx::PaintHover(const RollDrawing& drawing) const {
    if (!hover.cell) return;
    const QRect area = HoverPart();
    drawing.Fill(area.x(), area.y(), area.width(), area.height(), WithOpacity(colours.white, 0.18F));
}

// --- What is redrawn ----------------------------------------------------------------------------------

QRect CPianoRollCtrlEx::GridPart(double left, double top, double right, double bottom) const {
    const QRect area(
        QPoint(static_cast<int>(std::floor(std::max(left, -1.0e6))), static_cast<int>(std::floor(top))),
        QPoint(static_cast<int>(std::ceil(std::min(right, 1.0e6))), static_cast<int>(std::ceil(bottom)) - 1));
    return area.intersected(QRect(view.GridLeft(), kHeader, Width() - view.GridLeft(), view.GridHeight()));
}

QRect CPianoRollCtrlEx::HoverPart() const {
    QRect part;
    if (hover.note && *hover.note < edit.State().Notes().size()) {
        if (const auto box = view.BoxOf(edit.State().Notes()[*hover.note])) {
            part = GridPart(box->left, box->top, box->right, box->bottom);
        }
    } else if (hover.cell) {
        const double raster = view.time.SnapSteps();
        const double left = view.XOf(static_cast<double>(hover.step));
        const int top = view.YOfRow(hover.row);
        part = GridPart(left + 1, top, left + (raster > 0 ? raster : 1) * view.time.StepWidth() - 1,
                        top + view.RowHeight() - 1);
    }
    // More of a long note is not lit.
    part.setWidth(std::min(part.width(), kWidestRepaint));
    return part;
}

QRect CPianoRollCtrlEx::MarqueePart() const {
    const std::optional<Marquee> marquee = gestures.ShownMarquee();
    if (!marquee) return {};
    const auto [left, right] = std::minmax(marquee->x0, marquee->x1);
    const auto [top, bottom] = std::minmax(marquee->y0, marquee->y1);
    return GridPart(left, top, right, bottom + 1);
}

QRect CPianoRollCtrlEx::PlayheadPart(double step) const {
    if (step < 0) return {};
    const int place = static_cast<int>(std::floor(view.XOf(step)));
    if (place + kPlayheadHalf < view.GridLeft() || place - kPlayheadHalf > Width()) return {};
    return {place - kPlayheadHalf, 0, 2 * kPlayheadHalf + 1, Height()};
}

void CPianoRollCtrlEx::SetPlayhead(double step) {
    const bool sameTurn =
        step >= 0 && playhead >= 0 &&
        std::lround(view.XOf(step) * Canvas().Scale()) == std::lround(view.XOf(playhead) * Canvas().Scale());
    if (sameTurn || (step < 0 && playhead < 0)) return;
    if (playhead < 0) view.time.PlayingStarts();
    const double before = playhead;
    playhead = step;
    if (view.time.Follow(step)) return ViewMoved();
    const QRect from = PlayheadPart(before);
    const QRect to = PlayheadPart(step);
    if (from.intersects(to)) {
        DrawPart(from.united(to));
    } else {
        DrawPart(from);
        DrawPart(to);
    }
    if (onPlayhead) onPlayhead(before, step);
}

// The notes that differ, where they were and where they are.
QRect CPianoRollCtrlEx::ChangedPart(const NoteState& before) const {
    const std::vector<Note>& now = edit.State().Notes();
    const std::vector<Note>& old = before.Notes();
    QRect part;
    const auto add = [&](const Note& note) {
        if (const auto box = view.BoxOf(note)) part |= GridPart(box->left, box->top, box->right, box->bottom);
    };
    const bool sameList = now.size() == old.size();
    const std::size_t common = std::min(now.size(), old.size());
    std::size_t first = 0;
    while (first < common && now[first] == old[first]) ++first;
    if (before.pattern != edit.State().pattern) {
        for (std::size_t index = first; index < old.size(); ++index) {
            if (!sameList || !(old[index] == now[index])) add(old[index]);
        }
        for (std::size_t index = first; index < now.size(); ++index) {
            if (!sameList || !(old[index] == now[index])) add(now[index]);
        }
    }
    NoteSelection differing;
    std::set_symmetric_difference(before.selection.begin(), before.selection.end(), edit.State().selection.begin(),
                                  edit.State().selection.end(), std::back_inserter(differing));
    for (const std::uint32_t index : differing) {
        if (index < old.size()) add(old[index]);
        if (index < now.size()) add(now[index]);
    }
    return part;
}

void CPianoRollCtrlEx::NotesChanged(const NoteState& before) {
    const bool isAnother = before.pattern != edit.State().pattern;
    const KeySet usedBefore = usedKeys;
    if (isAnother) usedKeys = UsedKeys(*edit.State().pattern);
    if (isAnother && !gestures.IsBusy()) UpdateExtent();
    hover = wantedHover = {};
    const bool wholeChanges =
        before.pattern->StepCount() != edit.State().pattern->StepCount() || (view.IsDrums() && usedBefore != usedKeys);
    DrawPart(wholeChanges ? QRect(0, 0, Width(), Height()) : ChangedPart(before));
    pendingTicks = 0;
    if (onNotes) onNotes(before);
}

void CPianoRollCtrlEx::UpdateExtent() {
    double end = edit.State().pattern->StepCount();
    for (const Note& note : edit.State().Notes()) {
        if (IsPlayable(note))
            end = std::max(end, static_cast<double>(note.position) + static_cast<double>(note.length));
    }
    view.time.SetExtent(std::min<double>(end + view.time.meter.StepsPerBar(), 2.0 * kMaximumStepCount));
}

void CPianoRollCtrlEx::OptionsChanged() {
    UpdateExtent();
    Refresh();
    if (onView) onView();
}

void CPianoRollCtrlEx::ViewMoved() {
    hover = wantedHover = {};
    Refresh();
    edit.host.ViewChanged();
    if (onView) onView();
}

void CPianoRollCtrlEx::SetLengthText(const QString& format) {
    lengthFormat = format;
    Refresh();
}

void CPianoRollCtrlEx::MarksChanged() {
    if (!gestures.IsBusy()) UpdateExtent();
    const QRect marquee = MarqueePart();
    DrawPart(drawnMarquee.united(marquee));
    drawnMarquee = marquee;
    QRect mark;
    if (const std::optional<EditCursor> shown = keys.ShownCursor()) {
        const double raster = view.time.SnapSteps();
        const float length = raster > 0 ? static_cast<float>(raster) : 1;
        const auto box = view.BoxOf({shown->step, length, shown->key, 0});
        if (box) mark = GridPart(box->left + 1, box->top, box->right, box->bottom - 1);
    }
    const QRect before = std::exchange(drawnCursor, mark);
    if (before != mark) DrawPart(before.united(mark));
    if (gestures.SoundingKey() != drawnPressed) {
        drawnPressed = gestures.SoundingKey();
        DrawPart(QRect(0, kHeader, view.GridLeft(), view.GridHeight()));
    }
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
    if (keys.KeyDown(key, gestures)) MarksChanged();
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

std::uint64_t CPianoRollCtrlEx::SoundingHash() const {
    std::uint64_t hash = 0;
    if (!options.isSounding) return hash;
    for (int key = 0; key <= kHighestKey; ++key) {
        if (options.isSounding(key)) hash = hash * 131 + static_cast<std::uint64_t>(key) + 1;
    }
    return hash;
}

void CPianoRollCtrlEx::Tick() {
    if (edit.Pending() != nullptr && ++pendingTicks > kPendingTicks) edit.Settle();
    if (!IsShown()) return;
    LightHover();
    const std::uint64_t sounding = SoundingHash();
    if (sounding == drawnSounding) return;
    drawnSounding = sounding;
    DrawPart(QRect(0, kHeader, view.GridLeft(), view.GridHeight()));
}

}  // namespace quib
