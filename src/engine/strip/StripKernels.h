// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The sample loops of the mixer, for the instruction set of this machine. Chosen once when the engine is
// made; the functions are for render threads: no lock, no allocation, no system call. Blocks of 1 to
// 16384 frames. Every instruction set gives the same samples, bit for bit.
//
// A channel strip, per sample: equaliser bands 0, 1, 2 in series, x (1 - amount) + y amount each, amount
// smoothed by 0.01 of the difference; left and right gains smoothed by 0.005; send gains by 0.001; peak
// the larger of itself and the sample, times 0.9999. A smoothed value whose next step is lost in
// rounding has settled: it stays what it is until its target changes, and costs nothing.
//
// An equaliser that is switched off is gone, with all it remembers, once its amount is not above 0.0001. Cutting
// a signal into other blocks gives the same samples.

#include "engine/strip/StripJob.h"

namespace quib {

enum class EStripInstructions { kSse2, kAvx2 };

struct StripKernels {
    const char* name;

    // Strips of the list to their planes, and their state on to the end of the block. Strips of any number
    // of calls may be worked on at the same time; groups of kStripGroup make the best use of the machine.
    // An equaliser memory or meter that a plug-in has driven beyond every number is reset after the block.
    void (*processStrips)(StripJob* jobs, int count, int frames) noexcept;

    // Adds the strips, in list order for every sample, to the buses, over the frames first to
    // first + frames - 1. Threads may share a block by frame ranges (multiples of 16 avoid sharing lines).
    void (*mixStrips)(const StripJob* jobs, int count, const MixBuses& buses, int first, int frames) noexcept;

    // Master gain, clip to 0.99 either side (what is not a number becomes 0), meters; and the
    // crossfade gains, which the next block's strips use. In place.
    void (*processMaster)(MasterState& state, const MasterTargets& targets, float* left, float* right,
                          int frames) noexcept;
};

constexpr int kStripGroup = 4;

// Null when this processor, or this build, has not got the instructions.
const StripKernels* FindStripKernels(EStripInstructions instructions) noexcept;

// The fastest of them.
const StripKernels& BestStripKernels() noexcept;

}  // namespace quib
