// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Settings of one channel strip, each readable and writable by any thread. Switches are off at 0.

#include <array>

#include "model/CValue.h"
#include "model/StripLimits.h"

namespace quib {

constexpr float kDefaultLevel = 73.67F;
// 100 Hz, 500 Hz and 2000 Hz on the scale 20 Hz x 800^x.
constexpr std::array<float, kEqBandCount> kDefaultEqFreq = {0.24076759815216064F, 0.4815351963043213F,
                                                            0.6889311075210571F};
constexpr float kDefaultEqQ = 0.707F;

struct ChannelStrip {
    CValue level{kDefaultLevel};  // 0..127
    CValue pan;                   // -1 left .. 1 right
    CValue mute;                  // switch
    CValue soloMuted;             // switch, set by the solo rule of the console
    CValue crossfadeA;            // switch: belongs to side A of the crossfader
    CValue crossfadeB;            // switch: belongs to side B
    CValue synchro;               // switch: takes part in pattern synchronisation
    std::array<CValue, kInsertCount> insertOn;
    std::array<CValue, kSendCount> sendOn;
    std::array<CValue, kSendCount> sendLevel;  // 0..127
    CValue eqOn;                               // switch
    std::array<CValue, kEqBandCount> eqFreq;   // 0..1: 20 Hz .. 16 kHz
    std::array<CValue, kEqBandCount> eqQ;      // 0..1
    std::array<CValue, kEqBandCount> eqGain;   // -1..1: -20 dB .. +20 dB
    CValue peak;                               // meter, written by the render thread: 0..
};

}  // namespace quib
