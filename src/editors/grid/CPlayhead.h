// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where the playhead stands between two pictures of the playing state: the last place plus what the tempo
// makes of the time since. The caller passes the clock. User-interface thread.

#include <cstdint>

namespace quib {

class CPlayhead {
public:
    // One picture of the playing state. `step` as played; the loop is [loopStart, loopEnd) in steps.
    struct Picture {
        bool playing = false;
        double step = 0;
        double stepsPerSecond = 0;
        double loopStart = 0;
        double loopEnd = 0;
    };
    void Set(const Picture& next, std::uint64_t nanoseconds) noexcept;
    // The place now; -1 while nothing plays.
    double At(std::uint64_t nanoseconds) const noexcept;

private:
    double Wrapped(double step) const noexcept;

    Picture picture;
    double base = -1;            // steps
    std::uint64_t baseTime = 0;  // nanoseconds
};

}  // namespace quib
