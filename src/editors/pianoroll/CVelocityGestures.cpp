// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CVelocityGestures.h"

#include <algorithm>
#include <cmath>

#include "model/edits/NoteEdits.h"

namespace quib {

int CVelocityGestures::VelocityAt(int y) const noexcept {
    const double room = std::max(1, height - kHead - kFoot);
    const double share = 1 - (y - kHead) / room;
    return std::clamp(static_cast<int>(std::lround(share * kHighestVelocity)), 0, kHighestVelocity);
}

double CVelocityGestures::YOf(int velocity) const noexcept {
    const double room = std::max(1, height - kHead - kFoot);
    return kHead + room * (1 - static_cast<double>(velocity) / kHighestVelocity);
}

std::optional<std::uint32_t> CVelocityGestures::BarAt(int x) const {
    std::optional<std::uint32_t> found;
    const auto from = static_cast<float>(view.StepAt(x - kBarWidth + 1));
    const auto to = static_cast<float>(view.StepAt(x + 1));
    edit.Index().VisitRange(from, to, 0, [&](std::uint32_t index, const Note& note) {
        if (note.position < from || note.position >= to || (onlyKey >= 0 && note.key != onlyKey)) return;
        if (!found || !IsSelected(edit.State(), *found)) found = index;
    });
    return found;
}

NoteState CVelocityGestures::Painted(const NoteState& from, int x0, int y0, int x1, int y1) const {
    // A bar is as wide as it is drawn: it is met with all of it.
    const bool forward = x0 <= x1;
    const int first = x0 - (forward ? kBarWidth - 1 : -1);
    const int last = x1 + (forward ? 1 : 1 - kBarWidth);
    const VelocityStroke stroke{static_cast<float>(view.StepAt(first)), VelocityAt(y0),
                                static_cast<float>(view.StepAt(last)), VelocityAt(y1)};
    if (onlyKey < 0 || !from.selection.empty()) return PaintVelocity(from, stroke);
    NoteSelection row;
    const auto [low, high] = std::minmax(stroke.fromStep, stroke.toStep);
    for (const std::uint32_t note : NotesStartingIn(*from.pattern, low, high)) {
        if (from.Notes()[note].key == onlyKey) row.push_back(note);
    }
    if (row.empty()) return from;
    return Select(PaintVelocity(Select(from, row), stroke), {});
}

void CVelocityGestures::Press(int x, int y) {
    edit.host.Hold(true);
    edit.Begin();
    lastX = x;
    lastY = y;
    const std::optional<std::uint32_t> bar = BarAt(x);
    if (bar && IsSelected(edit.State(), *bar)) {
        mode = EMode::kMoveAll;
        pressVelocity = VelocityAt(y);
        return;
    }
    mode = EMode::kPaint;
    edit.Preview(Painted(edit.State(), x, y, x, y));
}

void CVelocityGestures::Move(int x, int y) {
    // The document has changed under the hand.
    if (!edit.IsOpen()) mode = EMode::kNone;
    if (mode == EMode::kMoveAll) edit.Preview(ShiftVelocity(edit.Start(), VelocityAt(y) - pressVelocity));
    if (mode == EMode::kPaint) edit.Preview(Painted(edit.State(), lastX, lastY, x, y));
    lastX = x;
    lastY = y;
}

void CVelocityGestures::Release() {
    mode = EMode::kNone;
    edit.Finish("Velocity");
    edit.host.Hold(false);
}

bool CVelocityGestures::Cancel() {
    if (mode == EMode::kNone) return false;
    mode = EMode::kNone;
    edit.Cancel();
    edit.host.Hold(false);
    return true;
}

}  // namespace quib
