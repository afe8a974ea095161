// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Pieces of drums and bass with a known tempo, downbeat and strokes, for measuring the rhythm detector. Test code,
// any thread.

#include <span>
#include <vector>

#include "export/rhythm/RhythmHits.h"

namespace quib::material {

constexpr int kRate = 44100;
constexpr int kKinds = 4;

struct Piece {
    double tempo = 120;
    int kind = 0;           // four to the floor, rock, broken, with sixteenths
    double swing = 0;       // share of a sixteenth
    double noise = 0.0005;  // standard deviation
    unsigned seed = 1;
    double ramp = 0;  // how much faster it ends, as a share
};

struct Rendered {
    std::vector<float> mono;
    double tempo = 0;             // BPM, mean of its beats
    double downbeat = 0;          // seconds
    std::vector<double> strokes;  // seconds, each once
};

Rendered Render(const Piece& piece, double seconds);
// F measure of hits within 25 ms of the strokes.
double HitScore(std::span<const RhythmHit> hits, const std::vector<double>& strokes);

}  // namespace quib::material
