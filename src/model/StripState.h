// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Memory of one channel strip: smoothed gains, equaliser coefficients and memories, peak meter. Belongs
// to the render thread alone and outlives every edit of the instrument; windows see copies of it.

#include "model/Equalizer.h"

namespace quib {

constexpr int kSendCount = 4;

// Last two inputs and outputs of one filter in one channel.
struct EqMemory {
    float x1 = 0, x2 = 0, y1 = 0, y2 = 0;
};

struct EqBandState {
    float a1 = 0, a2 = 0, b0 = 1, b1 = 0, b2 = 0;
    EqMemory left, right;
};

struct StripState {
    float gainLeft = 0, gainRight = 0;
    float sendGain[kSendCount] = {};
    float peak = 0;

    // Mix between the dry (0) and the filtered (1) signal, for every band and channel. All of them start
    // at 0, take the same step towards the same target on the same samples and stop on the same
    // condition, so they never differ and one number stands for all.
    float eqAmount = 0;
    EqBandState eqBands[kEqBandCount];
};

// Replaces the coefficients of one band; its memories run on. A band out of range is ignored.
inline void ApplyEqUpdate(StripState& state, const EqBandUpdate& update) noexcept {
    if (update.band < 0 || update.band >= kEqBandCount) return;
    EqBandState& band = state.eqBands[update.band];
    band.a1 = update.a1;
    band.a2 = update.a2;
    band.b0 = update.b0;
    band.b1 = update.b1;
    band.b2 = update.b2;
}

}  // namespace quib
