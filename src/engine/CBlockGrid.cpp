// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CBlockGrid.h"

#include <algorithm>

namespace quib {

CBlockGrid::CBlockGrid() {
    steps.reserve(InstrumentPlayState::kMaximumBlockSteps);
    points.reserve(kMaximumPoints);
}

void CBlockGrid::Clear() noexcept {
    steps.clear();
    points.clear();
    breaks = false;
    end = 0;
}

void CBlockGrid::AddStep(const BlockStep& step) noexcept {
    if (steps.size() < InstrumentPlayState::kMaximumBlockSteps) steps.push_back(step);
}

void CBlockGrid::SetPoints(int endFrame) noexcept {
    end = endFrame;
    for (std::size_t index = 0; index < steps.size(); ++index) {
        const BlockStep& step = steps[index];
        const int stop = index + 1 < steps.size() ? std::min(end, steps[index + 1].frame) : end;
        const int passed = step.frame < 0 ? (kGridFrames - 1 - step.frame) / kGridFrames : 0;
        for (int frame = step.frame + passed * kGridFrames; frame < stop; frame += kGridFrames) {
            if (points.size() == kMaximumPoints) return;
            const bool breaksHere =
                frame == step.frame && index > 0 && (step.jumps || step.tempo != steps[index - 1].tempo);
            points.push_back(
                {frame, static_cast<std::uint32_t>(index), static_cast<float>(ShareOf(step, frame)), breaksHere});
            breaks = breaks || breaksHere;
        }
    }
}

const BlockStep* CBlockGrid::StepAt(int frame) const noexcept {
    const auto next = std::upper_bound(steps.begin(), steps.end(), frame,
                                       [](int wanted, const BlockStep& step) { return wanted < step.frame; });
    return next == steps.begin() ? nullptr : &*std::prev(next);
}

}  // namespace quib
