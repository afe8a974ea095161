// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/grid/CTimeGrid.h"

#include <algorithm>
#include <cmath>

#include "model/edits/NoteSnap.h"

namespace quib {

namespace {
constexpr int kNarrowestStepLine = 6;  // pixels
constexpr int kNarrowestBeatLine = 4;
}  // namespace

void CTimeGrid::SetWidth(int pixels) noexcept {
    width = std::max(0, pixels);
    MoveTo(scroll);
}

void CTimeGrid::SetExtent(double steps) noexcept {
    extent = std::max(0.0, steps);
    MoveTo(scroll);
}

int CTimeGrid::MaximumScroll() const noexcept {
    return std::max(0, static_cast<int>(std::ceil(extent * stepWidth)) - width);
}

bool CTimeGrid::MoveTo(double pixels) noexcept {
    const int before = scroll;
    scroll = static_cast<int>(std::clamp(std::round(pixels), 0.0, static_cast<double>(MaximumScroll())));
    return scroll != before;
}

bool CTimeGrid::ScrollTo(int pixels) noexcept {
    if (!MoveTo(pixels)) return false;
    followPaused = true;
    return true;
}

bool CTimeGrid::SetStepWidth(int pixels, int anchor) noexcept {
    const int next = limits.Clamp(pixels);
    if (next == stepWidth) return false;
    const double step = StepAt(anchor);
    stepWidth = next;
    // Beyond the extent if need be: what lies under the mouse stays there.
    scroll = static_cast<int>(std::max(0.0, std::round(step * stepWidth - anchor)));
    return true;
}

float CTimeGrid::SnapDown(double step) const noexcept { return quib::SnapDown(static_cast<float>(step), SnapSteps()); }

float CTimeGrid::SnapNearest(double step) const noexcept {
    return quib::SnapNearest(static_cast<float>(step), SnapSteps());
}

ELine CTimeGrid::LineOf(int step) const noexcept {
    if (step % static_cast<int>(meter.StepsPerBar()) == 0) return ELine::kBar;
    return step % static_cast<int>(meter.StepsPerBeat()) == 0 ? ELine::kBeat : ELine::kStep;
}

std::vector<GridLine> CTimeGrid::Lines(double from, double to) const {
    std::vector<GridLine> lines;
    ELine least = ELine::kStep;
    if (stepWidth < kNarrowestStepLine) least = ELine::kBeat;
    if (stepWidth * meter.StepsPerBeat() < kNarrowestBeatLine) least = ELine::kBar;
    for (int step = static_cast<int>(std::ceil(std::max(0.0, from))); step < to; ++step) {
        const ELine kind = LineOf(step);
        if (kind >= least) lines.push_back({step, kind});
    }
    return lines;
}

bool CTimeGrid::Follow(double playStep) noexcept {
    if (!followOn || followPaused || playStep < 0) return false;
    if (playStep >= FirstStep() && playStep < EndStep()) return false;
    const double beat = meter.StepsPerBeat();
    const double page = std::floor(playStep / beat) * beat;
    // A beat may be wider than the view.
    return MoveTo((playStep - page) * stepWidth < width ? page * stepWidth : playStep * stepWidth);
}

}  // namespace quib
