// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/Scale.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>

#include "model/edits/NoteState.h"

namespace quib {

namespace {

constexpr int kOctave = 12;

template <class... Semitones>
constexpr unsigned Mask(Semitones... semitones) {
    return ((1U << semitones) | ...);
}

// In the order of EScaleType.
constexpr std::array<unsigned, kScaleTypeCount> kMasks{
    0xFFFU,
    Mask(0, 2, 4, 5, 7, 9, 11),
    Mask(0, 2, 3, 5, 7, 8, 10),
    Mask(0, 2, 3, 5, 7, 9, 10),
    Mask(0, 1, 3, 5, 7, 8, 10),
    Mask(0, 2, 4, 6, 7, 9, 11),
    Mask(0, 2, 4, 5, 7, 9, 10),
    Mask(0, 1, 3, 5, 6, 8, 10),
    Mask(0, 2, 3, 5, 7, 8, 11),
    Mask(0, 2, 3, 5, 7, 9, 11),
    Mask(0, 2, 4, 7, 9),
    Mask(0, 3, 5, 7, 10),
    Mask(0, 3, 5, 6, 7, 10),
};

int AboveRoot(const Scale& scale, int key) noexcept { return ((key - scale.root) % kOctave + kOctave) % kOctave; }

}  // namespace

unsigned ScaleMask(EScaleType type) noexcept { return kMasks[static_cast<std::size_t>(type)]; }

bool IsInScale(const Scale& scale, int key) noexcept {
    return (ScaleMask(scale.type) >> AboveRoot(scale, key) & 1U) != 0;
}

bool IsRoot(const Scale& scale, int key) noexcept { return AboveRoot(scale, key) == 0; }

int KeyByDegrees(const Scale& scale, int key, int degrees) noexcept {
    const int way = degrees < 0 ? -1 : 1;
    int reached = std::clamp(key, 0, kHighestKey);
    int left = std::min(std::abs(degrees), kHighestKey);
    for (int next = reached + way; left > 0 && next >= 0 && next <= kHighestKey; next += way) {
        if (!IsInScale(scale, next)) continue;
        reached = next;
        --left;
    }
    return reached;
}

}  // namespace quib
