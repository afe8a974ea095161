// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The effects that all instruments send to. One runs while it is sent to, and afterwards until it has been
// silent, below -120 dBFS, for the length of 100 blocks of the usual size. Render thread only.

#include <algorithm>
#include <array>
#include <utility>

#include "engine/BlockContext.h"
#include "engine/CInstrumentMixer.h"

namespace quib {

class CSharedEffects {
public:
    // Decides which effects run in the block, and makes their inputs, silent, the send buses.
    void Connect(const BlockContext& block, const CInstrumentMixer& mixer, MixBuses& buses) noexcept;
    // Adds what the running ones make of their inputs.
    void Run(const BlockContext& block, float* left, float* right) noexcept;
    // Frames of the last block in which one gave its output into the mix: first, and end.
    std::pair<int, int> Span(int send) const noexcept {
        const State& state = states[static_cast<std::size_t>(send)];
        return {state.first, std::max(state.first, state.end)};
    }

private:
    // Frames of the block are counted from 0; a range is empty where it does not begin before its end.
    struct State {
        int tail = 0;                  // frames that it still runs when the block is over
        int first = 0, end = 0;        // it runs
        int sentFrom = 0, sentTo = 0;  // something is sent to it
    };

    static void RunEffect(CPlugin& effect, State& state, const BlockContext& block, float* left, float* right) noexcept;

    std::array<State, kSendCount> states;
};

}  // namespace quib
