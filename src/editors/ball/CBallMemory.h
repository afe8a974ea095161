// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The last minute of a ball's movement while the song plays, and that movement as automation of what follows the
// ball. User-interface thread; knows no window.

#include <deque>
#include <functional>

#include "model/BallSound.h"
#include "model/edits/LaneEdits.h"

namespace quib {

class CBallMemory {
public:
    // Where the lanes stand that the movement would be written to, and where the ball is.
    struct Moment {
        int slot = 0;    // a pattern, or the song
        float step = 0;  // steps
        float x = 0, y = 0;
        std::uint64_t time = 0;  // nanoseconds
    };
    void Remember(const Moment& moment);
    void Forget() { moments.clear(); }
    bool IsEmpty() const noexcept { return moments.empty(); }

    // Calls `write` with each movement of an assignment on an axis, as values 0..1 over steps: one for each pass
    // of a loop, the oldest first.
    void Replay(const BallAssignment& assignment, int axis,
                const std::function<void(int slot, PointList movement)>& write) const;

private:
    std::deque<Moment> moments;
};

}  // namespace quib
