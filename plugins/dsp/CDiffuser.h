// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A chain of Schroeder all-pass filters, which smears every click into a short burst and leaves the
// spectrum as it is. y = d - g w, w = x + g d, d the w of `delay` frames ago. Belongs to one render
// thread; only Allocate() allocates.

#include <array>
#include <span>

#include "dsp/CDelayLine.h"
#include "dsp/Ramp.h"
#include "dsp/Room.h"

namespace quibplug {

class CDiffuser {
public:
    static constexpr std::size_t kStages = 6;

    void Allocate(const std::array<float, kStages>& milliseconds, float sampleRate) noexcept;
    void Clear() noexcept;
    int Frames() const noexcept;  // of all stages together

    // At a control tick, or at once: g of every stage is `gain`, less where that stage alone would ring
    // for longer than `ringSeconds` (RT60).
    void Aim(float gain, float ringSeconds) noexcept;
    void Snap(float gain, float ringSeconds) noexcept;

    // Stages `first` up to `last` of the chain over `samples`, in place.
    void Process(float* samples, std::size_t first, std::size_t last, TickSpan span) noexcept;

private:
    struct Stage {
        CDelayLine line;
        int delay = 0;
        Ramp gain;
    };
    float GainOf(const Stage& stage, float gain, float ringSeconds) const noexcept;

    float m_sampleRate = 44100.0f;
    std::array<Stage, kStages> m_stages;
};

}  // namespace quibplug
