// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The notes of one pattern with its length: an immutable value, built by the editing thread and
// published whole, so that length and notes always agree.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace quib {

constexpr int kPatternCount = 16;
constexpr int kDefaultStepCount = 16;
constexpr int kMaximumStepCount = 1 << 20;

struct Note {
    float position = 0;  // steps from the start of the pattern
    float length = 0;    // steps
    std::int32_t key = 0;
    std::int32_t velocity = 0;

    friend bool operator==(const Note&, const Note&) = default;
};

class CPattern {
public:
    CPattern() = default;
    // `steps`: length of the loop. `noteList`: any order, which is kept. `firstStep`: where a repeat starts.
    explicit CPattern(int steps, std::vector<Note> noteList = {}, int firstStep = 0);

    // Length of the loop in steps as stored; a loop plays at least one step.
    int StepCount() const noexcept { return stepCount; }
    int LoopLength() const noexcept { return stepCount < 1 ? 1 : stepCount; }
    // Step at which a repeat starts, inside the loop.
    int LoopStart() const noexcept { return loopStart; }

    // In the order in which they were added.
    const std::vector<Note>& Notes() const noexcept { return notes; }

    // Indices into Notes() of the notes that start inside `step`, earlier position first.
    std::span<const std::uint32_t> NotesOfStep(int step) const noexcept;
    // Indices into Notes() of the notes that start inside any step, earlier position first, then as added.
    std::span<const std::uint32_t> NotesByStart() const noexcept;

private:
    int stepCount = kDefaultStepCount;
    int loopStart = 0;
    std::vector<Note> notes;
    std::vector<std::uint32_t> order;  // indices sorted by position
};

// The step in which a position lies; positions that are no number or out of any range lie at -1.
int StepOfPosition(float position) noexcept;

}  // namespace quib
