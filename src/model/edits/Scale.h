// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Musical scales: which keys belong to one. Any thread.

namespace quib {

enum class EScaleType {
    kChromatic,
    kMajor,
    kMinor,
    kDorian,
    kPhrygian,
    kLydian,
    kMixolydian,
    kLocrian,
    kHarmonicMinor,
    kMelodicMinor,
    kMajorPentatonic,
    kMinorPentatonic,
    kBlues
};
constexpr int kScaleTypeCount = 13;

struct Scale {
    int root = 0;  // 0 to 11, 0 = C
    EScaleType type = EScaleType::kChromatic;

    friend bool operator==(const Scale&, const Scale&) = default;
};

// Bit n set: n semitones above the root belong to it.
unsigned ScaleMask(EScaleType type) noexcept;
// Any key, also outside 0 to 127.
bool IsInScale(const Scale& scale, int key) noexcept;
bool IsRoot(const Scale& scale, int key) noexcept;
// The key of the scale that is `degrees` further up (negative: down), 0 to 127; it stops at the last one
// on the keyboard. From a key outside the scale the first degree is the next key of the scale that way.
int KeyByDegrees(const Scale& scale, int key, int degrees) noexcept;

}  // namespace quib
