// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/control/CTakeOver.h"

#include <algorithm>
#include <cmath>

namespace quib {

namespace {
constexpr float kRounding = 1e-4F;  // of a value that is written and read again
}

std::optional<float> CTakeOver::Take(float wanted, float now, float step, float low, float high) noexcept {
    const float reachable = std::clamp(now, low, high);
    const float before = last;
    const bool wasKnown = known;
    last = wanted;
    known = true;
    const bool stillFollows = follows && std::abs(now - written) <= kRounding;
    const bool reached = std::abs(wanted - reachable) <= step;
    const bool passed = wasKnown && (before - reachable) * (wanted - reachable) <= 0;
    if (!stillFollows && !reached && !passed) {
        follows = false;
        return std::nullopt;
    }
    return wanted;
}

}  // namespace quib
