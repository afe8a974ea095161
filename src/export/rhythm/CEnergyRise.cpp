// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/rhythm/CEnergyRise.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace quib {

float CEnergyRise::Add(double energy) noexcept {
    energies[hops % kAhead] = energy;
    const double mean = std::accumulate(energies.begin(), energies.end(), 0.0) / kAhead;
    // The means of the kAhead - 1 hops before share hops with this one and are left out.
    double before = nothing;
    for (std::size_t back = kAhead; back < kAhead + reach; ++back) {
        before = std::max(before, means[(hops + means.size() - back) % means.size()]);
    }
    means[hops % means.size()] = mean;
    ++hops;
    return static_cast<float>(10.0 * std::log10(std::max(mean, nothing) / before));
}

}  // namespace quib
