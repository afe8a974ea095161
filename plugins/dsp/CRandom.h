// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Small random source for noise and start phases (Marsaglia's xorshift, 32 bits, period 2^32 - 1).
// Always the same sequence for the same seed, so that a project renders to the same bytes.

#include <cstdint>

namespace quibplug {

class CRandom {
public:
    explicit CRandom(std::uint32_t seed = 1) noexcept { Seed(seed); }

    // Any seed will do; neighbouring seeds give unrelated sequences.
    void Seed(std::uint32_t seed) noexcept {
        const std::uint32_t mixed = (seed + 0x9e3779b9u) * 0x85ebca6bu;
        m_state = (mixed ^ (mixed >> 15)) | 1u;
        Next();
        Next();
    }

    std::uint32_t Next() noexcept {
        m_state ^= m_state << 13;
        m_state ^= m_state >> 17;
        m_state ^= m_state << 5;
        return m_state;
    }

    // Uniform within -1..1: white noise of power 1/3.
    float NextSigned() noexcept { return static_cast<float>(static_cast<std::int32_t>(Next())) * 4.6566129e-10f; }

private:
    std::uint32_t m_state = 1;
};

}  // namespace quibplug
