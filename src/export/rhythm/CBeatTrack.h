// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The beats of a sound whose tempo wanders, followed from hit to hit: each beat is looked for near where the last ones
// lead, and laid where the hits within some beats say. Times in seconds. Any thread but render threads.

#include <vector>

#include "export/rhythm/HitGrid.h"

namespace quib {

class CBeatTrack {
public:
    // `period`: about the mean, of a sound of that many seconds.
    CBeatTrack(const RhythmHits& hits, double period, double seconds);

    // Whether more than a few beats leave the even grid of that period.
    bool Wanders() const noexcept { return wanders; }
    double MeanPeriod() const;
    // Where a time would lie were every beat as long as the mean, and back.
    double ToEven(double time) const;
    double FromEven(double time) const;

private:
    struct Seen {
        double beat = 0;  // number
        double time = 0;
        double weight = 0;
    };
    void Follow(const RhythmHits& hits, double period, double seconds);
    double TimeOf(double beat) const;
    void Judge(double period);

    std::vector<Seen> seen;
    std::vector<double> beats;  // times
    bool wanders = false;
};

}  // namespace quib
