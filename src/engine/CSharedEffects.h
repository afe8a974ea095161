// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The effects that all instruments send to. One runs while it is sent to, and afterwards until it has been
// silent, below -120 dBFS, for the length of 100 blocks of the usual size. Render thread only.

#include <array>

#include "engine/BlockContext.h"
#include "engine/CInstrumentMixer.h"

namespace quib {

class CSharedEffects {
public:
    // Decides which effects run in the block, and makes their inputs, silent, the send buses.
    void Connect(const BlockContext& block, const CInstrumentMixer& mixer, MixBuses& buses) noexcept;
    // Adds what the running ones make of their inputs.
    void Run(const BlockContext& block, float* left, float* right) noexcept;

private:
    struct State {
        int tail = 0;  // frames that it still runs in silence
        bool runs = false;
        bool audible = false;  // something is sent to it
    };

    void RunEffect(CPlugin& effect, State& state, const BlockContext& block, float* left, float* right) const noexcept;

    std::array<State, kSendCount> states;
};

}  // namespace quib
