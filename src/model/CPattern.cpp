// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/CPattern.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace quib {

int StepOfPosition(float position) noexcept {
    return position >= 0.0F && position < static_cast<float>(kMaximumStepCount) ? static_cast<int>(position) : -1;
}

namespace {

// By position, then as added; what lies in no step, positions that are no number too, comes first. The
// bits of floats that are not negative have the order of the floats, and whole numbers sort fast.
std::uint64_t OrderKey(const Note& note, std::size_t index) noexcept {
    const bool inStep = StepOfPosition(note.position) >= 0;
    const std::uint64_t place = inStep ? std::bit_cast<std::uint32_t>(note.position + 0.0F) + 1U : 0U;
    return place << 32 | index;
}

// Digit by digit, each pass keeping the order of the one before: the keys come in the order of their low half.
void SortByPlace(std::vector<std::uint64_t>& keys) {
    constexpr int kBits = 11;
    constexpr std::size_t kDigits = std::size_t{1} << kBits;
    std::vector<std::uint64_t> sorted(keys.size());
    for (int shift = 32; shift < 64; shift += kBits) {
        std::array<std::uint32_t, kDigits + 1> starts{};
        for (const std::uint64_t key : keys) ++starts[(key >> shift & (kDigits - 1)) + 1];
        for (std::size_t digit = 1; digit < kDigits; ++digit) starts[digit] += starts[digit - 1];
        for (const std::uint64_t key : keys) sorted[starts[key >> shift & (kDigits - 1)]++] = key;
        keys.swap(sorted);
    }
}

}  // namespace

CPattern::CPattern(int steps, std::vector<Note> noteList, int firstStep)
    : stepCount(std::clamp(steps, 0, kMaximumStepCount)), notes(std::move(noteList)), order(notes.size()) {
    loopStart = std::clamp(firstStep, 0, LoopLength() - 1);
    std::vector<std::uint64_t> keys(notes.size());
    for (std::size_t index = 0; index < notes.size(); ++index) keys[index] = OrderKey(notes[index], index);
    constexpr std::size_t kFew = 500;
    if (!std::is_sorted(keys.begin(), keys.end())) {
        keys.size() < kFew ? std::sort(keys.begin(), keys.end()) : SortByPlace(keys);
    }
    std::transform(keys.begin(), keys.end(), order.begin(),
                   [](std::uint64_t key) { return static_cast<std::uint32_t>(key); });
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
    const auto first = std::partition_point(
        order.begin(), order.end(), [this](std::uint32_t index) { return StepOfPosition(notes[index].position) < 0; });
    return {first, order.end()};
}

}  // namespace quib
