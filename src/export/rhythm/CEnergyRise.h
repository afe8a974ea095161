// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where the energy of a sound rises above all that it had just before: mean energy of a few hops against the highest
// mean of the hops before them. What decays, or swings within a period of a bass, does not rise. One thread.

#include <array>
#include <cstddef>

namespace quib {

class CEnergyRise {
public:
    static constexpr std::size_t kAhead = 3;  // hops of one mean

    static constexpr std::size_t kLongest = 40;

    // `before`: hops that are looked back, 1..kLongest. `silence`: mean square above 0 that counts as none.
    CEnergyRise(std::size_t before, double silence) noexcept : reach(before), nothing(silence) {}

    // The next hop, as mean square. Gives the rise, dB, that began kAhead - 1 hops before it.
    float Add(double energy) noexcept;

private:
    std::size_t reach;
    double nothing;
    std::array<double, kAhead> energies{};
    std::array<double, kAhead + kLongest> means{};
    std::size_t hops = 0;
};

}  // namespace quib
