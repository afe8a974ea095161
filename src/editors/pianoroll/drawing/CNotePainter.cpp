// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/drawing/CNotePainter.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "controls/CPalette.h"

namespace quib {

namespace {
constexpr int kLeastNamedRow = 10;  // pixels
constexpr double kHead = 2;         // pixels of a note's start in full colour
constexpr double kFrame = 2;
constexpr double kNarrowestNamed = 14;
constexpr double kNameMargin = 3;
constexpr double kLeastNameMargin = 0.5;
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

void CNotePainter::Collect(const RollDrawing& drawing, const CNoteIndex& index) {
    found.clear();
    const int rowHeight = drawing.view.RowHeight();
    VisitShown(drawing, index, [&](std::uint32_t number, const Note& note, const NoteBox& box) {
        found.push_back({number, &note, Painted(box, rowHeight)});
    });
    if (!drawing.view.IsDrums()) CutCovered();
    SortByRow(drawing.view.Rows());
}

// Counted, since there are many notes and few rows.
void CNotePainter::SortByRow(const CRowOrder& rows) {
    const auto fromTop = [&rows](const Shown& entry) {
        return static_cast<std::size_t>(rows.Count() - 1 - rows.RowOf(entry.note->key));
    };
    std::array<std::size_t, kHighestKey + 2> starts{};
    for (const Shown& entry : found) ++starts[fromTop(entry) + 1];
    for (std::size_t row = 1; row < starts.size(); ++row) starts[row] += starts[row - 1];
    shown.resize(found.size());
    for (const Shown& entry : found) shown[starts[fromTop(entry)]++] = entry;
}

void CNotePainter::Draw(const RollDrawing& drawing, const NoteSelection& selection,
                        std::optional<std::uint32_t> hovered) const {
    const auto first = std::ranges::lower_bound(shown, static_cast<double>(drawing.part.top()), {},
                                                [](const Shown& entry) { return entry.box.top; });
    for (auto place = first; place != shown.end() && place->box.top <= drawing.part.bottom(); ++place) {
        const Shown& entry = *place;
        if (entry.box.Width() <= 0) continue;
        const Look look = LookOf(drawing, entry, selection, hovered == entry.number);
        if (drawing.view.IsDrums()) {
            DrawHit(drawing, *entry.note, look);
        } else {
            DrawNote(drawing, *entry.note, look);
        }
    }
}

std::span<const CNotePainter::Shown> CNotePainter::ShownOfRow(const PianoRollView& view, int row) const {
    const double top = view.YOfRow(row);
    const auto [first, last] =
        std::ranges::equal_range(shown, top, {}, [](const Shown& entry) { return entry.box.top; });
    return {first, last};
}

void CNotePainter::DrawRows(const RollDrawing& drawing, CGridPainter& ground, const NoteSelection& selection,
                            std::optional<std::uint32_t> hovered) {
    const auto [lowest, highest] = drawing.Rows();
    const double height = drawing.view.RowHeight() - CGridPainter::GapOf(drawing.view);
    const double frame = height < kLeastFramed ? 0 : kFrame;
    for (int row = highest; row >= lowest; --row) {
        const std::span<const Shown> notes = ShownOfRow(drawing.view, row);
        body.Begin(drawing, ground.RowLine(drawing, row, {}));
        edge = body;
        for (const Shown& entry : notes) {
            if (entry.box.Width() > 0)
                FillLines(drawing, entry, LookOf(drawing, entry, selection, hovered == entry.number));
        }
        const double top = drawing.view.YOfRow(row);
        edge.CopyTo(drawing, top, frame);
        body.CopyTo(drawing, top + frame, height - 2 * frame);
        edge.CopyTo(drawing, top + height - frame, frame);
        ground.DrawGap(drawing, row);
        for (std::size_t index = 0; index < notes.size(); ++index) {
            const Shown& entry = notes[index];
            const Note& note = *entry.note;
            // A note that lies over the beginning of this one takes the place of its name.
            const bool isCovered =
                index + 1 < notes.size() && notes[index + 1].box.left < entry.box.left + kNarrowestNamed;
            if (note.velocity > 0 && (isCovered || entry.box.Width() < kNarrowestNamed)) continue;
            const Look look = LookOf(drawing, entry, selection, hovered == entry.number);
            if (note.velocity <= 0) {
                DrawNote(drawing, note, look);
            } else if (!look.selected) {
                const auto tick = SwingPlace(drawing, note, look.box);
                DrawName(drawing, note, look, tick.value_or(look.box.left));
            }
        }
    }
    ground.DrawBeyond(drawing);
}

// One sees through silent notes: they are drawn upon the others.
void CNotePainter::FillLines(const RollDrawing& drawing, const Shown& entry, const Look& look) {
    const Note& note = *entry.note;
    const NoteBox& box = look.box;
    if (note.velocity <= 0) return;
    const bool isFramed = look.selected && box.bottom - box.top >= kLeastFramed;
    const QRgb outside = look.selected ? drawing.colours.white : look.body;
    for (CPixelLine* const line : {&body, &edge}) line->Fill(box.left, box.right, outside);
    if (look.selected && !isFramed) return;
    const double inset = isFramed ? kFrame : 0;
    const NoteBox inner{box.left + inset, box.top, box.right - inset, box.bottom};
    const auto fill = [&](double left, double right, QRgb colour) {
        body.Fill(left, right, colour);
        if (!isFramed) edge.Fill(left, right, colour);
    };
    if (isFramed) {
        if (inner.Width() > 0) fill(inner.left, inner.right, look.body);
    } else {
        fill(box.left, std::min(box.left + kHead, box.right), look.edge);
    }
    if (const auto tick = SwingPlace(drawing, note, inner)) fill(*tick, *tick + 2, drawing.colours.ink);
}

CNotePainter::Look CNotePainter::LookOf(const RollDrawing& drawing, const Shown& entry, const NoteSelection& selection,
                                        bool isHovered) {
    const RollColours& colours = drawing.colours;
    const bool recorded = entry.number >= drawing.options.recordedFrom;
    Look look;
    look.box = entry.box;
    look.body = recorded ? colours.record : colours.OfVelocity(entry.note->velocity);
    look.edge = recorded ? colours.record : colours.pattern;
    if (entry.note->position >= static_cast<float>(drawing.stepCount)) {
        look.body = colours.Dimmed(look.body);
        look.edge = colours.Dimmed(look.edge);
    }
    if (isHovered) look.body = colours.Hovered(look.body);
    look.selected = IsSelected(selection, entry.number);
    return look;
}

// Later notes lie over earlier ones of their row: what they cover is not painted, nor named.
void CNotePainter::CutCovered() {
    struct Cover {
        double left = 1e9;
        double right = -1e9;
    };
    std::array<Cover, kHighestKey + 1> covers;
    for (auto entry = found.rbegin(); entry != found.rend(); ++entry) {
        // One sees through a silent note.
        if (entry->note->velocity <= 0) continue;
        Cover& cover = covers[static_cast<std::size_t>(entry->note->key)];
        const double right = entry->box.right;
        if (right > cover.right || right < cover.left) {
            cover.right = right;
        } else {
            entry->box.right = cover.left;
        }
        cover.left = entry->box.left;
    }
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
    if (look.selected) {
        if (height < kLeastFramed) return drawing.Fill(box.left, box.top, width, height, frame);
        drawing.Framed(box.left, box.top, width, height, kFrame, frame, look.body);
        DrawSwing(drawing, note,
                  {{box.left + kFrame, box.top + kFrame, box.right - kFrame, box.bottom - kFrame}, look.body});
        return;
    }
    drawing.Fill(box.left, box.top, width, height, look.body);
    drawing.Fill(box.left, box.top, std::min(kHead, width), height, look.edge);
    DrawName(drawing, note, look, DrawSwing(drawing, note, look));
}

// Gives where the note is free of the tick.
double CNotePainter::DrawSwing(const RollDrawing& drawing, const Note& note, const Look& look) const {
    const std::optional<double> left = SwingPlace(drawing, note, look.box);
    if (left) drawing.Fill(*left, look.box.top, 2, look.box.bottom - look.box.top, drawing.colours.ink);
    return left.value_or(look.box.left);
}

std::optional<double> CNotePainter::SwingPlace(const RollDrawing& drawing, const Note& note, const NoteBox& box) {
    const double late = static_cast<double>(drawing.options.swing) * drawing.view.time.StepWidth();
    if (late < 1 || StepOfPosition(note.position) % 2 == 0) return std::nullopt;
    const double start = drawing.view.XOf(static_cast<double>(note.position)) + 1;
    const double left = std::min(start + std::round(late), box.right - 2);
    return left > box.left ? std::optional(left) : std::nullopt;
}

void CNotePainter::DrawName(const RollDrawing& drawing, const Note& note, const Look& look, double from) const {
    if (drawing.view.RowHeight() < kLeastNamedRow) return;
    const TextMask& name = drawing.masks.NoteName(note.key);
    const double room = look.box.right - from - kHead - name.width;
    if (room < 2 * kLeastNameMargin) return;
    const double left = from + kHead + std::min(kNameMargin, room / 2);
    if (!drawing.Touches(left, left + name.width + 1)) return;
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
