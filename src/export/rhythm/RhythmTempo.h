// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Tempo and downbeat of a sound. The rise of seven bands of a logarithmic spectrum, its autocorrelation summed over
// multiples of each period, then refined at ever longer distances up to sixteen bars. Any thread but render
// threads.

#include <functional>
#include <span>
#include <vector>

namespace quib {

constexpr double kLowestTempo = 60;  // BPM that is looked for
constexpr double kHighestTempo = 200;

struct RhythmTempo {
    double tempo = 0;       // BPM; 0: none found
    double downbeat = 0;    // seconds: the first one of the sound
    double sureness = 0;    // 0..1
    double steadiness = 0;  // seconds that beats are off the grid over sixteen bars, root mean square
    // How strong each whole tempo from kLowestTempo / 2 to 2 * kHighestTempo is, 0..1, for drawing.
    std::vector<float> strengths;
};

// `mono`: the whole sound. `goOn` is asked now and then; false gives what is empty.
RhythmTempo FindTempo(std::span<const float> mono, int sampleRate, const std::function<bool()>& goOn = {});

// The same grid told by a tempo that the user knows: only the downbeat is looked for.
double FindDownbeat(std::span<const float> mono, int sampleRate, double tempo);

}  // namespace quib
