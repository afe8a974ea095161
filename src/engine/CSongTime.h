// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The song's time: the transport, the sequencer that moves it, and the time of the block that the other
// parts and the plug-ins see. Render thread only.

#include "engine/BlockContext.h"
#include "engine/CRandom.h"
#include "engine/CSequencer.h"
#include "engine/CTransport.h"

namespace quib {

class CSongTime {
public:
    explicit CSongTime(std::uint32_t seed) noexcept : random(seed) {}

    // While no block is rendered.
    void Seed(std::uint32_t seed) noexcept { random.Seed(seed); }

    const CTransport& Transport() const noexcept { return transport; }

    // Lets an instrument that was never in a block before join what plays.
    void Admit(CInstrument& instrument) const noexcept;

    // From the current song step, patterns from their start; at that frame of the block.
    void Play(BlockContext& block, const EngineSettings& settings, int frame = 0) noexcept;
    void Stop(BlockContext& block) noexcept;
    // The step, of the song or counted from its start, where playing ends.
    void StopAt(int step) noexcept;
    void Locate(BlockContext& block, int step) noexcept;
    // Until all that is to begin together has been chosen.
    void HoldLaunch(bool on) noexcept { transport.launchHeld = on; }

    // Plays the steps of the block; afterwards the block knows its time.
    void Advance(BlockContext& block, const EngineSettings& settings, bool recording) noexcept;

private:
    CRandom random;
    CTransport transport;
    CSequencer sequencer{random};
};

}  // namespace quib
