// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CVelocityLaneCtrl.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"

namespace quib {

namespace {
constexpr int kGhostInset = 12;
constexpr int kGhostWidth = 4;
constexpr double kBar = CVelocityGestures::kBarWidth;
constexpr int kNumberWidth = 18;  // beside a bar under the mouse
constexpr int kWheelNotch = 4;
constexpr int kWidestStrip = 16;  // pixels that the playhead redraws as one
constexpr int kSilentHeight = 5;  // of the frame that stands for no velocity
}  // namespace

CVelocityLaneCtrl::CVelocityLaneCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth,
                                     int newHeight, CPianoRollCtrlEx& pianoRoll)
    : CDirectPaneCtrl(window, number, left, top, newWidth, newHeight),
      roll(pianoRoll),
      gestures(roll.Edit(), roll.view) {
    section = ESection::kPattern;
    takesWheel = true;
    gestures.Resize(newHeight);
    roll.onNotes = [this](const NoteState& before) { NotesChanged(before); };
    roll.onView = [this] {
        Refresh();
        if (onView) onView();
    };
    roll.onPlayhead = [this](double from, double to) { PlayheadMoved(from, to); };
}

// --- Drawing ------------------------------------------------------------------------------------------

RollDrawing CVelocityLaneCtrl::Drawing(const QRect& part) {
    roll.Masks().SetScale(Canvas().Scale());
    return {Canvas(),     roll.view,        roll.options, roll.Colours(),
            roll.Masks(), QPoint(X(), Y()), part,         roll.State().pattern->StepCount()};
}

void CVelocityLaneCtrl::Paint(const QRect& part) {
    const RollDrawing drawing = Drawing(part);
    const int left = roll.view.GridLeft();
    if (part.left() < left) PaintScale(drawing);
    Canvas().SetClip(OnCanvas(part.intersected(QRect(left, 0, Width() - left, Height()))));
    Canvas().FillLines(QRectF(X() + left, Y(), roll.view.time.Width(), Height()), roll.Ground().LaneLine(drawing));
    for (const int velocity : {kHighestVelocity, (kHighestVelocity + 1) / 2}) {
        drawing.Fill(left, std::floor(gestures.YOf(velocity)), Width() - left, 1, roll.Colours().gridBeat);
    }
    PaintBars(drawing);
    const double end = drawing.EndX();
    if (end >= left) drawing.Fill(end, 0, 2, Height(), roll.Colours().pattern);
    if (roll.Playhead() >= 0) DrawPlayheadLine(drawing, roll.view.XOf(roll.Playhead()), 0, Height());
    Canvas().SetClip(OnCanvas(part));
}

void CVelocityLaneCtrl::PaintScale(const RollDrawing& drawing) const {
    const int edge = roll.view.GridLeft();
    drawing.Fill(0, 0, edge, Height(), roll.Colours().well);
    for (const int velocity : {kHighestVelocity, (kHighestVelocity + 1) / 2, 0}) {
        const double middle = std::clamp(gestures.YOf(velocity), 7.0, Height() - 7.0);
        drawing.TextTo(edge - 7, middle - 7, 14, QString::number(velocity), roll.Colours().textMuted, 10, false);
    }
}

template <class Visit>
void CVelocityLaneCtrl::VisitBars(const RollDrawing& drawing, const Visit& visit) const {
    const PianoRollView& view = roll.view;
    const int reach = kBarInset + std::max(CVelocityGestures::kBarWidth, kGhostInset + kGhostWidth);
    const auto from = static_cast<float>(view.StepAt(std::max(drawing.part.left(), view.GridLeft()) - reach));
    const auto to = static_cast<float>(view.StepAt(drawing.part.right() + 1));
    roll.Edit().Index().VisitRange(from, to, 0, [&](std::uint32_t index, const Note& note) {
        if (note.position >= from) visit(index, note);
    });
}

void CVelocityLaneCtrl::PaintGhosts(const RollDrawing& drawing) const {
    VisitBars(drawing, [&](std::uint32_t /*index*/, const Note& note) {
        if (note.key == GhostKey()) return;
        const double top = std::floor(gestures.YOf(note.velocity));
        drawing.Fill(roll.view.XOf(static_cast<double>(note.position)) + kGhostInset, top, kGhostWidth, Foot() - top,
                     drawing.colours.ghost);
    });
}

// Bars at the same place stand in front of each other, the lower ones before the higher ones; of each the
// part is drawn that is seen.
void CVelocityLaneCtrl::PaintBars(const RollDrawing& drawing) const {
    if (GhostKey() >= 0) PaintGhosts(drawing);
    std::vector<Bar> bars;
    VisitBars(drawing, [&](std::uint32_t index, const Note& note) {
        if (GhostKey() < 0 || note.key == GhostKey()) bars.push_back({note.position, note.velocity, index});
    });
    for (auto first = bars.begin(); first != bars.end();) {
        const auto last =
            std::find_if(first, bars.end(), [&](const Bar& bar) { return bar.position != first->position; });
        std::sort(first, last, [](const Bar& a, const Bar& b) {
            return a.velocity != b.velocity ? a.velocity > b.velocity : a.note < b.note;
        });
        for (auto bar = first; bar != last; ++bar) {
            const bool isLast = bar + 1 == last;
            const double foot = isLast ? Foot() : std::floor(gestures.YOf((bar + 1)->velocity));
            if (isLast || (bar + 1)->velocity != bar->velocity) PaintBar(drawing, *bar, foot, isLast);
        }
        first = last;
    }
}

void CVelocityLaneCtrl::PaintBar(const RollDrawing& drawing, const Bar& bar, double foot, bool isLast) const {
    const RollColours& colours = roll.Colours();
    const double left = BarLeft(bar.position);
    const bool beyond = bar.position >= static_cast<float>(drawing.stepCount);
    const QRgb edge = beyond ? colours.Dimmed(colours.pattern) : colours.pattern;
    if (bar.velocity > 0) {
        const double top = std::min(std::floor(gestures.YOf(bar.velocity)), foot - 2);
        QRgb body = colours.OfVelocity(bar.velocity);
        if (beyond) body = colours.Dimmed(body);
        if (hovered == bar.note) body = colours.Hovered(body);
        const bool selected = IsSelected(roll.State(), bar.note);
        drawing.Fill(left, top, kBar, foot - top, selected ? colours.white : body);
        if (selected) {
            // Open below where another bar stands before it.
            const double inner = (isLast ? foot - 2 : foot) - (top + 2);
            if (inner > 0) drawing.Fill(left + 2, top + 2, kBar - 4, inner, body);
        } else {
            drawing.Fill(left, top, kBar, 2, edge);
        }
    } else {
        const QRgb frame = IsSelected(roll.State(), bar.note) ? colours.white : edge;
        drawing.Frame(left, foot - kSilentHeight, kBar, kSilentHeight, 1, frame);
    }
    if (hovered != bar.note) return;
    const double middle = std::clamp(gestures.YOf(bar.velocity), 6.0, Foot() - 6);
    drawing.TextFrom(left + kBar + 3, middle - 6, 12, QString::number(bar.velocity), colours.text, 9, true);
}

// --- What is redrawn ----------------------------------------------------------------------------------

QRect CVelocityLaneCtrl::BarPart(const Note& note) const {
    const double left = roll.view.XOf(static_cast<double>(note.position));
    if (left < -1000 || left > Width() + 1000) return {};
    return {static_cast<int>(std::floor(left)), 0, CVelocityGestures::kBarWidth + kBarInset + kNumberWidth + 3,
            Height()};
}

void CVelocityLaneCtrl::NotesChanged(const NoteState& before) {
    const NoteState& now = roll.State();
    QRect part;
    const bool sameSize = before.Notes().size() == now.Notes().size();
    const std::size_t count = std::max(before.Notes().size(), now.Notes().size());
    for (std::size_t index = 0; index < count && before.pattern != now.pattern; ++index) {
        const bool inBoth = index < before.Notes().size() && index < now.Notes().size();
        if (inBoth && before.Notes()[index] == now.Notes()[index]) continue;
        if (part.left() <= roll.view.GridLeft() && part.right() >= Width()) break;
        if (index < before.Notes().size()) part |= BarPart(before.Notes()[index]);
        if (index < now.Notes().size()) part |= BarPart(now.Notes()[index]);
    }
    for (const NoteState* const state : {&before, &now}) {
        if (before.selection == now.selection) break;
        for (const std::uint32_t index : state->selection) {
            if (index < state->Notes().size()) part |= BarPart(state->Notes()[index]);
        }
    }
    if (!sameSize) hovered.reset();
    const bool lengthChanges = before.pattern->StepCount() != now.pattern->StepCount();
    DrawPart(lengthChanges ? QRect(0, 0, Width(), Height()) : part);
    if (onNotes) onNotes(before);
}

void CVelocityLaneCtrl::PlayheadMoved(double from, double to) {
    const auto part = [this](double step) {
        const int place = static_cast<int>(std::floor(roll.view.XOf(step)));
        return step >= 0 && place >= roll.view.GridLeft() - 2 ? QRect(place - 2, 0, 5, Height()) : QRect();
    };
    const QRect both = part(from).united(part(to));
    if (both.width() <= kWidestStrip) return DrawPart(both);
    DrawPart(part(from));
    DrawPart(part(to));
}

// --- Events -------------------------------------------------------------------------------------------

void CVelocityLaneCtrl::SetHovered(std::optional<std::uint32_t> note) {
    if (note == hovered) return;
    const auto before = std::exchange(hovered, note);
    for (const auto& index : {before, note}) {
        if (index && *index < roll.State().Notes().size()) DrawPart(BarPart(roll.State().Notes()[*index]));
    }
}

void CVelocityLaneCtrl::ShowBar(int px) {
    const std::optional<std::uint32_t> bar = gestures.BarAt(px - X() - kBarInset);
    if (!bar) return Owner().HideBubble();
    const Note& note = roll.State().Notes()[*bar];
    const QRect place(px - 4, Y() + static_cast<int>(gestures.YOf(note.velocity)), 8, 8);
    Owner().ShowBubble(place, QString::asprintf("Velocity: %i", note.velocity), roll.Colours().pattern);
}

void CVelocityLaneCtrl::OnMouseMove(int px, int py) {
    if (gestures.IsBusy()) {
        gestures.Move(px - X() - kBarInset, py - Y());
        return ShowBar(px);
    }
    SetHovered(px - X() >= roll.view.GridLeft() ? gestures.BarAt(px - X() - kBarInset) : std::nullopt);
}

void CVelocityLaneCtrl::OnLButtonDown(int px, int py, int button) {
    if (button != 0 || px - X() < roll.view.GridLeft()) return;
    gestures.onlyKey = GhostKey();
    gestures.Press(px - X() - kBarInset, py - Y());
    ShowBar(px);
}

void CVelocityLaneCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) {
    if (gestures.IsBusy()) gestures.Release();
}

void CVelocityLaneCtrl::OnMouseWheel(int px, int /*py*/, std::uint32_t word) {
    if (gestures.IsBusy()) return;
    const int change = static_cast<int>(std::lround(NotchesOf(word) * kWheelNotch));
    const std::optional<std::uint32_t> bar = gestures.BarAt(px - X() - kBarInset);
    roll.Edit().Accumulate(StressAt(roll.State(), bar, change), "Velocity");
    ShowBar(px);
}

void CVelocityLaneCtrl::OnMouseLeave() { SetHovered(std::nullopt); }

void CVelocityLaneCtrl::OnKeyDown(int key) {
    if (key == virtualKey::kEscape) gestures.Cancel();
}

void CVelocityLaneCtrl::Resize(int newWidth, int newHeight) {
    SetSize(newWidth, newHeight);
    gestures.Resize(newHeight);
}

}  // namespace quib
