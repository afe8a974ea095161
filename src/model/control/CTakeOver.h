// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Soft take-over: a value follows a hand only after the hand has reached it or passed it, and has to be reached anew
// when something else has moved it. What is written never differs from what was there by more than the hand has moved
// at once or one of its steps; only a value outside of the hand's range comes in at the end next to it. Any one thread.

#include <optional>

namespace quib {

class CTakeOver {
public:
    // The hand is at `wanted`, the value at `now`; both 0..1. `step`: what the hand can tell apart. Nothing while the
    // value does not follow. `low` and `high` limit the hand, low first.
    std::optional<float> Take(float wanted, float now, float step, float low, float high) noexcept;
    // What became of the value that was taken: it may have a grid of its own.
    void Written(float now) noexcept {
        written = now;
        follows = true;
    }
    void Forget() noexcept { *this = {}; }

private:
    bool known = false;    // where the hand was
    bool follows = false;  // the value is what the hand made of it, unless something else has moved it
    float last = 0;
    float written = 0;
};

}  // namespace quib
