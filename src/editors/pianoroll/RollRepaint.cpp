// SPDX-License-Identifier: GPL-3.0-or-later
// How the piano roll draws itself, and how much of it anew after a change.
#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "editors/pianoroll/CPianoRollCtrlEx.h"
#include "editors/pianoroll/drawing/HeaderPainter.h"
#include "editors/pianoroll/drawing/StripPainter.h"

namespace quib {

namespace {
constexpr int kWidestRepaint = 64;  // pixels of width that hover and playhead redraw at most
constexpr int kPlayheadHalf = 7;    // pixels of its flag to each side
constexpr int kPlayheadLineHalf = 2;
constexpr int kBandRows = 2;  // drawn together
constexpr int kAlmost = 48;   // pixels
}  // namespace

// --- Drawing ------------------------------------------------------------------------------------------

RollDrawing CPianoRollCtrlEx::Drawing(const QRect& part) {
    masks.SetScale(Canvas().Scale());
    return {Canvas(), view, options, colours, masks, QPoint(X(), Y()), part, edit.State().pattern->StepCount()};
}

void CPianoRollCtrlEx::Paint(const QRect& part) {
    const RollDrawing drawing = Drawing(part);
    const int left = view.GridLeft();
    Canvas().SetClip(
        OnCanvas(part.intersected(QRect(left, PianoRollView::kHeaderHeight, Width() - left, view.GridHeight()))));
    if (part.bottom() >= PianoRollView::kHeaderHeight && part.right() >= left) PaintGrid(drawing);
    Canvas().SetClip(OnCanvas(part.intersected(QRect(0, PianoRollView::kHeaderHeight, left, view.GridHeight()))));
    if (part.bottom() >= PianoRollView::kHeaderHeight && part.left() < left) {
        if (view.IsDrums()) {
            DrawDrumStrip(drawing, usedKeys, gestures.SoundingKey());
        } else {
            DrawKeyStrip(drawing, gestures.SoundingKey());
        }
    }
    Canvas().SetClip(OnCanvas(part));
    if (part.top() < PianoRollView::kHeaderHeight) PaintHeader(drawing);
}

void CPianoRollCtrlEx::PaintHeader(const RollDrawing& drawing) const {
    DrawHeader(drawing, lengthFormat.arg(drawing.stepCount));
    const int left = view.GridLeft() - kPlayheadHalf;
    Canvas().SetClip(OnCanvas(drawing.part.intersected(QRect(left, 0, Width() - left, PianoRollView::kHeaderHeight))));
    DrawPatternEnd(drawing, 0, PianoRollView::kHeaderHeight);
    const double place = view.XOf(playhead);
    if (playhead >= 0 && place >= view.GridLeft()) DrawPlayheadFlag(drawing, place);
    Canvas().SetClip(OnCanvas(drawing.part));
}

// A few rows at a time, ground and notes: what is written twice is still in the processor's cache then.
void CPianoRollCtrlEx::PaintRows(const RollDrawing& drawing) {
    notes.Collect(drawing, edit.Index());
    const QRect part =
        drawing.part.intersected(QRect(view.GridLeft(), PianoRollView::kHeaderHeight, Width(), view.GridHeight()));
    const QRect whole = OnCanvas(part);
    if (options.ghosts.empty() && !view.IsDrums()) {
        RollDrawing rows = drawing;
        rows.part = part;
        Canvas().SetClip(whole);
        notes.DrawRows(rows, ground, edit.State().selection, hover.note);
        return PaintHover(rows);
    }
    // Ghosts are looked for anew in each band; what is narrow fits into the cache.
    const bool isOneBand = !options.ghosts.empty() || part.width() <= kWidestRepaint;
    const int bandHeight = isOneBand ? part.height() + view.RowHeight() : kBandRows * view.RowHeight();
    for (int top = view.YOfRow(view.RowAt(part.top())); top <= part.bottom(); top += bandHeight) {
        RollDrawing band = drawing;
        band.part = QRect(part.left(), top, part.width(), bandHeight);
        Canvas().SetClip(OnCanvas(band.part).intersected(whole));
        ground.Draw(band, usedKeys);
        notes.DrawGhosts(band);
        PaintHover(band);
        notes.Draw(band, edit.State().selection, hover.note);
    }
    Canvas().SetClip(whole);
}

void CPianoRollCtrlEx::PaintGrid(const RollDrawing& drawing) {
    PaintRows(drawing);
    DrawPatternEnd(drawing, PianoRollView::kHeaderHeight, Height());
    PaintMarks(drawing);
    if (playhead >= 0) DrawPlayheadLine(drawing, view.XOf(playhead), PianoRollView::kHeaderHeight, Height());
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
    return area.intersected(
        QRect(view.GridLeft(), PianoRollView::kHeaderHeight, Width() - view.GridLeft(), view.GridHeight()));
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

QRect CPianoRollCtrlEx::PlayheadPart(double step, bool isFlag) const {
    if (step < 0) return {};
    const int place = static_cast<int>(std::floor(view.XOf(step)));
    const int half = isFlag ? kPlayheadHalf : kPlayheadLineHalf;
    if (place + half < view.GridLeft() || place - half > Width()) return {};
    const int top = isFlag ? 0 : PianoRollView::kHeaderHeight;
    return {place - half, top, 2 * half + 1, (isFlag ? PianoRollView::kHeaderHeight : Height()) - top};
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
    for (const bool isFlag : {true, false}) {
        const QRect from = PlayheadPart(before, isFlag);
        const QRect to = PlayheadPart(step, isFlag);
        if (from.intersects(to)) {
            DrawPart(from.united(to));
        } else {
            DrawPart(from);
            DrawPart(to);
        }
    }
    if (onPlayhead) onPlayhead(before, step);
}

// The notes that differ, where they were and where they are.
QRect CPianoRollCtrlEx::ChangedPart(const NoteState& before) const {
    const std::vector<Note>& now = edit.State().Notes();
    const std::vector<Note>& old = before.Notes();
    QRect part;
    bool isWhole = false;
    const QRect whole(view.GridLeft(), PianoRollView::kHeaderHeight, Width() - view.GridLeft(), view.GridHeight());
    const auto add = [&](const Note& note) {
        if (isWhole) return;
        if (const auto box = view.BoxOf(note)) part |= GridPart(box->left, box->top, box->right, box->bottom);
        // A line of pixels at an edge is not worth going through thousands of notes.
        isWhole = part.width() > whole.width() - kAlmost && part.height() > whole.height() - kAlmost;
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
    return isWhole ? whole : part;
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
        DrawPart(QRect(0, PianoRollView::kHeaderHeight, view.GridLeft(), view.GridHeight()));
    }
}

}  // namespace quib
