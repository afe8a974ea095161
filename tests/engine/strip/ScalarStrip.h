// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The channel strip as one plain loop over samples, in the order in which its arithmetic is described:
// what tests compare with and benchmarks measure against.

#include <algorithm>
#include <cmath>

#include "engine/strip/StripJob.h"

namespace quib {

struct ScalarStrip {
    struct Channel {
        float x1 = 0, x2 = 0, y1 = 0, y2 = 0, amount = 0;
    };
    struct Band {
        EqBandUpdate filter;
        Channel channels[2];
    };

    float gainLeft = 0, gainRight = 0;
    float sendGain[kSendCount] = {};
    float peak = 0;
    Band bands[kEqBandCount];

    static float Filter(const EqBandUpdate& filter, Channel& c, float target, float sample) {
        c.amount += 0.01f * (target - c.amount);
        if (target == 0 && c.amount <= 0.0001f) return c = {}, sample;
        const float x = sample == 0 ? 1e-15f : sample;
        const float y = filter.b0 * x + filter.b1 * c.x1 + filter.b2 * c.x2 - filter.a1 * c.y1 - filter.a2 * c.y2;
        c.x2 = c.x1;
        c.x1 = x;
        c.y2 = c.y1;
        c.y1 = y;
        return x * (1 - c.amount) + y * c.amount;
    }

    static void Equalize(Band& memory, float target, float* left, float* right, int frames) {
        Band band = memory;
        for (int i = 0; i < frames; ++i) {
            left[i] = Filter(band.filter, band.channels[0], target, left[i]);
            right[i] = Filter(band.filter, band.channels[1], target, right[i]);
        }
        memory = band;
    }

    // Filters left and right in place and adds the strip to the buses. State and arguments are copied to
    // where the compiler can keep them in registers.
    void Run(const StripTargets& targets, float* left, float* right, const float* const* extraLeft,
             const float* const* extraRight, const MixBuses& buses, int frames) {
        for (Band& band : bands)
            if (targets.eqAmount != 0 || band.channels[0].amount > 0.0001f)
                Equalize(band, targets.eqAmount, left, right, frames);
        ScalarStrip strip = *this;
        strip.Mix(targets, left, right, extraLeft, extraRight, buses, frames);
        *this = strip;
    }

    void Mix(const StripTargets targets, const float* left, const float* right, const float* const* extraLeft,
             const float* const* extraRight, const MixBuses buses, int frames) {
        for (int i = 0; i < frames; ++i) {
            gainLeft += 0.005f * (targets.gainLeft - gainLeft);
            gainRight += 0.005f * (targets.gainRight - gainRight);
            const float l = left[i] * gainLeft;
            const float r = right[i] * gainRight;
            peak = std::max(peak, std::abs(l));
            peak = std::max(peak, std::abs(r)) * 0.9999f;
            buses.masterLeft[i] += l;
            buses.masterRight[i] += r;
            for (int k = 0; k < kSendCount; ++k) {
                sendGain[k] += 0.001f * (targets.send[k] - sendGain[k]);
                if (targets.holdSend[k]) sendGain[k] = std::max(sendGain[k], kHeldSendGain);
                if (!buses.sendLeft[k]) continue;
                buses.sendLeft[k][i] += l * sendGain[k];
                buses.sendRight[k][i] += r * sendGain[k];
                if (!targets.holdSend[k] || !extraLeft[k]) continue;
                buses.sendLeft[k][i] += extraLeft[k][i] * gainLeft;
                buses.sendRight[k][i] += extraRight[k][i] * gainRight;
            }
        }
    }
};

}  // namespace quib
