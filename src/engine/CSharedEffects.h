// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The effects that all instruments send to. One runs while it is sent to and for its tail, 100 blocks,
// afterwards. Render thread only.

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
    // Whether one ran in the last block.
    bool Ran(int send) const noexcept { return runs[static_cast<std::size_t>(send)]; }

private:
    bool Runs(const CPlugin* effect, std::size_t index, bool audible) noexcept;

    std::array<int, kSendCount> tail{};  // blocks
    std::array<bool, kSendCount> runs{};
};

}  // namespace quib
