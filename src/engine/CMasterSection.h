// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The master bus and what happens to it: inserts, audition, test tone, gain with its ceiling, meters,
// and at last the level of the headphones, which is heard but not recorded. Render thread only.

#include <array>

#include "engine/Audition.h"
#include "engine/BlockContext.h"
#include "engine/CInstrumentMixer.h"
#include "engine/CTestTone.h"
#include "engine/CTransport.h"
#include "engine/RenderFormat.h"
#include "platform/CAudioPlanes.h"

namespace quib {

class CMasterSection {
public:
    using Peaks = std::array<CValue, 2>;

    CMasterSection(const StripKernels& stripKernels, const CLevelTables& levelTables, Peaks& shownPeaks)
        : kernels(stripKernels), tables(levelTables), peaks(shownPeaks) {}

    // All buffers silent; while no block is rendered.
    void Clear() noexcept { planes.Clear(); }

    float* Left() noexcept { return planes.Plane(0); }
    float* Right() noexcept { return planes.Plane(1); }
    const float* Channel(int channel) const noexcept { return planes.Plane(channel); }
    CrossfadeGains Crossfade() const noexcept { return {state.crossfadeA, state.crossfadeB}; }

    // Begins the block: the bus, silent, to be mixed into.
    MixBuses Begin(const BlockContext& block) noexcept;
    void RunInserts(const BlockContext& block, const EngineSettings& settings) noexcept;
    // Only while the transport runs.
    void PlayAudition(const BlockContext& block, const Audition& audition, const CTransport& transport) noexcept;
    void PlayTestTone(const BlockContext& block, bool on) noexcept;
    // Gain, ceiling and meters.
    void Finish(const BlockContext& block, const EngineSettings& settings) noexcept;
    void ApplyHeadphonesLevel(const BlockContext& block, const EngineSettings& settings) noexcept;

private:
    const StripKernels& kernels;
    const CLevelTables& tables;
    Peaks& peaks;
    CAudioPlanes planes{2, RenderFormat::kMaximumBlockSize};
    MasterState state;
    CTestTone tone;
    float headphonesGain = 1;
};

}  // namespace quib
