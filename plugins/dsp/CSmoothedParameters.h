// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The parameters as the render thread hears them: continuous ones glide to what the host has set,
// one step per control tick, stepped ones follow at once. Belongs to the render thread; reads the
// program bank, never locks or allocates after construction.

#include <vector>

#include "dsp/CProgramBank.h"

namespace quibplug {

class CSmoothedParameters {
public:
    explicit CSmoothedParameters(const CProgramBank& bank);

    // Control ticks per second; the glide has a time constant of 8 ms at any rate.
    void SetTickRate(float ticksPerSecond) noexcept;

    // Everything to its target: nothing sounds that could jump. True if any value may have changed.
    bool Snap() noexcept;
    // One control tick further. True if any value has changed.
    bool Advance() noexcept;

    // Real value in the unit of the parameter's description.
    float Real(int parameter) const noexcept { return m_real[static_cast<std::size_t>(parameter)]; }
    int Step(int parameter) const noexcept { return static_cast<int>(Real(parameter)); }
    float Normalised(int parameter) const noexcept { return m_present[static_cast<std::size_t>(parameter)]; }

private:
    bool ReadTargets() noexcept;

    const CProgramBank& m_bank;
    float m_share = 1.0f;
    std::uint32_t m_generation = 0;
    bool m_moving = false;
    std::vector<float> m_targets;
    std::vector<float> m_present;
    std::vector<float> m_real;
};

}  // namespace quibplug
