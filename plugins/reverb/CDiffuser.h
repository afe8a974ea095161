// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A chain of Schroeder all-pass filters, which smears every click into a short burst and leaves the
// spectrum as it is. y = d - g w, w = x + g d, d the w of `delay` frames ago. Belongs to one render
// thread; only Allocate() allocates.

#include <array>
#include <span>

#include "dsp/CDelayLine.h"

namespace quibplug {

class CDiffuser {
public:
    static constexpr std::size_t kStages = 4;

    void Allocate(const std::array<float, kStages>& milliseconds, float sampleRate) noexcept;
    void Clear() noexcept;
    int Frames() const noexcept;  // of all stages together

    // Stages `first` up to `last` of the chain over `samples`, in place; `gains` is g of each frame.
    void Process(float* samples, const float* gains, int frames, std::size_t first, std::size_t last) noexcept;

private:
    struct Stage {
        CDelayLine line;
        int delay = 0;
    };
    std::array<Stage, kStages> m_stages;
};

}  // namespace quibplug
