// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Gain laws of the faders as three tables over the whole part of a control value 0..127. Built once with
// the engine and only read afterwards, by any thread. Linear gains, never decibels.
//   sends and master: 0..63 spans 1/1024..0.25 (48 dB), 64..127 spans 0.25..1
//   channel:          0..63 the same,                   64..127 spans 0.25..2 (+6 dB)
//   crossfader:       0..31 spans 0.004..0.18, 32..63 spans 0.18..0.71 (-3 dB), 64..127 spans 0.71..1
// Steps 63 and 64 have the same gain in each table.

#include <array>

namespace quib {

class CLevelTables {
public:
    static constexpr int kSize = 128;

    CLevelTables();

    // Gain of a control value; its whole part is taken modulo 128, and anything beyond an int is 0.
    float SendGain(float control) const noexcept { return send[Index(control)]; }
    float MasterGain(float control) const noexcept { return send[Index(control)]; }
    float ChannelGain(float control) const noexcept { return channel[Index(control)]; }

    // Gains of the crossfader's two sides: A is loudest at 0, B at 127.
    float CrossfadeGainA(float control) const noexcept { return crossfade[Index(control) ^ (kSize - 1)]; }
    float CrossfadeGainB(float control) const noexcept { return crossfade[Index(control)]; }

private:
    static unsigned Index(float control) noexcept;

    std::array<float, kSize> send;
    std::array<float, kSize> channel;
    std::array<float, kSize> crossfade;
};

}  // namespace quib
