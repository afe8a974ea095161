// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The height of a wave between its samples: four times oversampled by a windowed sinc of twelve taps.
// What it answers belongs to the sample kDelay frames before and to the way to the next one. Belongs
// to one render thread; never allocates.

#include <array>
#include <cstddef>

namespace quibplug {

class CTruePeak {
public:
    static constexpr int kDelay = 6;
    static constexpr int kMostFrames = 64;

    CTruePeak() noexcept;
    void Reset() noexcept { m_past.fill(0.0f); }

    // Raises each of `peaks` to the magnitude of what comes in, kDelay frames late.
    void Raise(const float* samples, float* peaks, int frames) noexcept;

private:
    static constexpr std::size_t kTaps = 2 * static_cast<std::size_t>(kDelay);
    static constexpr std::size_t kBetween = 3;  // places between two samples

    std::array<std::array<float, kTaps>, kBetween> m_taps;
    std::array<float, kTaps - 1> m_past{};
};

}  // namespace quibplug
