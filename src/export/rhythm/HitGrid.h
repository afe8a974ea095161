// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Beats as an even grid laid over the hits of a sound: which period they keep to, where the grid lies and which of its
// beats begins a bar. Periods and places in seconds. Any thread but render threads.

#include <span>
#include <vector>

#include "export/rhythm/RhythmHits.h"

namespace quib {

struct RhythmHits {
    std::vector<RhythmHit> all;
    std::vector<RhythmHit> low;    // bass drums
    std::vector<RhythmHit> snare;  // the strong ones in the middle
};
RhythmHits FindHits(std::span<const float> mono, int sampleRate);

// How well hits keep to a period, in turns that meet at the same angle: whole, half and quarter beats.
double Concentration(const std::vector<RhythmHit>& hits, double period);
// The best period within `reach` of one, looked for in steps; both as shares of it.
double BestNear(const std::vector<RhythmHit>& hits, double period, double reach, double step);
// The period near `period` to which the hits keep best, in a sound of that many seconds.
double Sharpened(const std::vector<RhythmHit>& hits, double period, double seconds);
// Of the beats, 0 to below the period.
double PhaseOf(const RhythmHits& hits, double period);
// The first of the sound; a little below 0 for one that has begun just before.
double DownbeatOf(const RhythmHits& hits, double period);
// How far hits near the grid are off it, root mean square.
double SteadinessOf(const std::vector<RhythmHit>& hits, double phase, double period);

}  // namespace quib
