// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/CPattern.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace quib {

int StepOfPosition(float position) noexcept {
    return position >= 0.0F && position < static_cast<float>(kMaximumStepCount) ? static_cast<int>(position) : -1;
}

CPattern::CPattern(int steps, std::vector<Note> noteList, int firstStep)
    : stepCount(std::clamp(steps, 0, kMaximumStepCount)), notes(std::move(noteList)), order(notes.size()) {
    loopStart = std::clamp(firstStep, 0, LoopLength() - 1);
    std::iota(order.begin(), order.end(), 0U);
    // By step first: positions that are no number share step -1, which keeps the order total.
    const auto before = [this](std::uint32_t a, std::uint32_t b) {
        const int stepA = StepOfPosition(notes[a].position);
        const int stepB = StepOfPosition(notes[b].position);
        return stepA != stepB ? stepA < stepB : stepA >= 0 && notes[a].position < notes[b].position;
    };
    if (!std::is_sorted(order.begin(), order.end(), before)) std::stable_sort(order.begin(), order.end(), before);
}

std::span<const std::uint32_t> CPattern::NotesOfStep(int step) const noexcept {
    const auto stepOf = [this](std::uint32_t index) { return StepOfPosition(notes[index].position); };
    const auto first = std::lower_bound(order.begin(), order.end(), step,
                                        [&](std::uint32_t index, int wanted) { return stepOf(index) < wanted; });
    const auto last = std::upper_bound(first, order.end(), step,
                                       [&](int wanted, std::uint32_t index) { return wanted < stepOf(index); });
    return {first, last};
}

std::span<const std::uint32_t> CPattern::NotesByStart() const noexcept {
    const auto first = std::partition_point(order.begin(), order.end(), [this](std::uint32_t index) {
        return StepOfPosition(notes[index].position) < 0;
    });
    return {first, order.end()};
}

}  // namespace quib
