// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/drawing/CNotePainter.h"

#include <algorithm>
#include <cmath>

#include "controls/CPalette.h"

namespace quib {

namespace {
constexpr int kLeastNamedRow = 10;  // pixels
constexpr double kHead = 2;         // pixels of a note's start in full colour
constexpr double kFrame = 2;
constexpr double kNameMargin = 3;
constexpr double kNameEnd = 1;
constexpr int kHitInset = 2;
constexpr int kHitHeight = 19;
constexpr float kHitGround = 0.26F;
constexpr int kLeastFramed = 5;  // pixels of height: a lower note is selected by its colour

// Where it is painted: a pixel less than its cell both ways.
NoteBox Painted(const NoteBox& cell, int rowHeight) {
    return {cell.left + 1, cell.top, std::max(cell.right, cell.left + 2), cell.bottom - (rowHeight < 5 ? 0 : 1)};
}

}  // namespace

template <class Visit>
void CNotePainter::VisitShown(const RollDrawing& drawing, const CNoteIndex& index, Visit&& visit) {
    const PianoRollView& view = drawing.view;
    const int left = std::max(drawing.part.left(), view.GridLeft());
    const auto from = static_cast<float>(view.StepAt(left - 1));
    const auto to = static_cast<float>(view.StepAt(drawing.part.right() + 2));
    // A hit takes a step, however short its note is.
    index.VisitRange(view.IsDrums() ? from - 1 : from, to, view.LeastLength(),
                     [&](std::uint32_t number, const Note& note) {
                         const std::optional<NoteBox> box = view.BoxOf(note);
                         if (!box || box->bottom <= drawing.part.top() || box->top > drawing.part.bottom()) return;
                         visit(number, note, *box);
                     });
}

void CNotePainter::Draw(const RollDrawing& drawing, const CNoteIndex& index, const NoteSelection& selection,
                        std::optional<std::uint32_t> hovered) const {
    const RollColours& colours = drawing.colours;
    const int rowHeight = drawing.view.RowHeight();
    VisitShown(drawing, index, [&](std::uint32_t number, const Note& note, const NoteBox& box) {
        const bool recorded = drawing.options.isBeingRecorded && drawing.options.isBeingRecorded(number);
        Look look;
        look.box = Painted(box, rowHeight);
        look.body = recorded ? colours.record : colours.OfVelocity(note.velocity);
        look.edge = recorded ? colours.record : colours.pattern;
        if (note.position >= static_cast<float>(drawing.stepCount)) {
            look.body = colours.Dimmed(look.body);
            look.edge = colours.Dimmed(look.edge);
        }
        if (hovered == number) look.body = colours.Hovered(look.body);
        look.selected = std::binary_search(selection.begin(), selection.end(), number);
        if (drawing.view.IsDrums()) {
            DrawHit(drawing, note, look);
        } else {
            DrawNote(drawing, note, look);
        }
    });
}

void CNotePainter::DrawNote(const RollDrawing& drawing, const Note& note, const Look& look) const {
    const NoteBox& box = look.box;
    const double width = box.Width();
    const double height = box.bottom - box.top;
    const QRgb frame = drawing.colours.white;
    if (note.velocity <= 0) {
        drawing.Frame(box.left, box.top, width, height, look.selected ? kFrame : 1, look.selected ? frame : look.edge);
        if (!look.selected) DrawName(drawing, note, look, box.left);
        return;
    }
    drawing.Fill(box.left, box.top, width, height, look.body);
    drawing.Fill(box.left, box.top, std::min(kHead, width), height, look.edge);
    const double free = DrawSwing(drawing, note, look);
    if (!look.selected) return DrawName(drawing, note, look, free);
    if (height < kLeastFramed) return drawing.Fill(box.left, box.top, width, height, frame);
    drawing.Frame(box.left, box.top, width, height, kFrame, frame);
}

// Gives where the note is free of the tick.
double CNotePainter::DrawSwing(const RollDrawing& drawing, const Note& note, const Look& look) const {
    const double late = static_cast<double>(drawing.options.swing) * drawing.view.time.StepWidth();
    if (StepOfPosition(note.position) % 2 == 0 || late < 1) return look.box.left;
    const double left = std::min(look.box.left + std::round(late), look.box.right - 2);
    if (left > look.box.left) drawing.Fill(left, look.box.top, 2, look.box.bottom - look.box.top, drawing.colours.ink);
    return left;
}

void CNotePainter::DrawName(const RollDrawing& drawing, const Note& note, const Look& look, double from) const {
    if (drawing.view.RowHeight() < kLeastNamedRow) return;
    const TextMask& name = drawing.masks.NoteName(note.key);
    const double left = from + kHead + kNameMargin;
    if (left + name.width + kNameEnd > look.box.right) return;
    const QRgb colour = note.velocity <= 0 ? look.edge : drawing.colours.TextOn(look.body);
    drawing.Mask(name, left, look.box.top, look.box.bottom - look.box.top, colour);
}

void CNotePainter::DrawHit(const RollDrawing& drawing, const Note& note, const Look& look) const {
    const double left = look.box.left + kHitInset - 1;
    const double width = std::max(2.0, look.box.right - look.box.left - kHitInset);
    const double top = look.box.top + kHitInset;
    const double foot = top + kHitHeight;
    if (note.velocity <= 0) {
        drawing.Frame(left, top, width, kHitHeight, 1, look.edge);
    } else {
        const double filled =
            std::max(2.0, std::round(kHitHeight * static_cast<double>(note.velocity) / kHighestVelocity));
        drawing.Fill(left, top, width, kHitHeight - filled, Mix(drawing.colours.gridOff, look.edge, kHitGround));
        drawing.Fill(left, foot - filled, width, filled, look.body);
        drawing.Fill(left, foot - filled, width, kHead, look.edge);
    }
    if (look.selected) drawing.Frame(left, top, width, kHitHeight, kFrame, drawing.colours.white);
}

void CNotePainter::DrawGhosts(const RollDrawing& drawing) const {
    const int rowHeight = drawing.view.RowHeight();
    for (const std::shared_ptr<const CNoteIndex>& ghost : drawing.options.ghosts) {
        VisitShown(drawing, *ghost, [&](std::uint32_t /*number*/, const Note& /*note*/, const NoteBox& cell) {
            const NoteBox box = Painted(cell, rowHeight);
            drawing.Fill(box.left, box.top + 1, box.Width(), box.bottom - box.top - 1, drawing.colours.ghost);
        });
    }
}

}  // namespace quib
