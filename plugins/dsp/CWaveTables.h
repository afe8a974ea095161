// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Band-limited saw and triangle in one table per third of an octave, and a sine. Made once per
// process by the first plug-in instance, read by render threads. A phase is 32 bits of one period:
// it wraps by itself and adds up without rounding, so that a sound does not depend on block sizes.

#include <array>
#include <cstdint>
#include <vector>

namespace quibplug {

// One table with its first value repeated at the end, read with linear interpolation.
struct WaveTable {
    const float* values = nullptr;
    unsigned shift = 0;  // phase bits below the index

    float At(std::uint32_t phase) const noexcept {
        const std::uint32_t index = phase >> shift;
        const float fraction = static_cast<float>((phase << (32 - shift)) >> 8) * (1.0f / 16777216.0f);
        return values[index] + (values[index + 1] - values[index]) * fraction;
    }
};

class CWaveTables {
public:
    // The tables of this process; made at the first call, which therefore belongs to a constructor.
    static const CWaveTables& Shared();

    // Phase per sample of a frequency; at most 0.49 of the rate.
    static std::uint32_t Increment(float hertz, float sampleRate) noexcept;

    // Saw falling from 1 to -1, and triangle, without partials above half the rate at `increment`.
    const WaveTable& Saw(std::uint32_t increment) const noexcept { return m_saws[LevelFor(increment)]; }
    const WaveTable& Triangle(std::uint32_t increment) const noexcept { return m_triangles[LevelFor(increment)]; }
    const WaveTable& Sine() const noexcept { return m_sine; }

private:
    static constexpr std::size_t kLevels = 31;  // 1024 partials down to 1, in thirds of octaves

    CWaveTables();
    void MakeLevel(std::size_t level, unsigned partials);
    WaveTable Keep(std::vector<float> values);
    std::size_t LevelFor(std::uint32_t increment) const noexcept;

    std::array<WaveTable, kLevels> m_saws;
    std::array<WaveTable, kLevels> m_triangles;
    std::array<std::uint32_t, kLevels> m_maximumIncrements;
    WaveTable m_sine;
    std::vector<std::vector<float>> m_storage;
};

}  // namespace quibplug
