// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The master bus and what happens to it: inserts, audition, test tone, gain with its ceiling, meters,
// and at last the level of the headphones, which is heard but not recorded. Render thread only.

#include <array>

#include "engine/Audition.h"
#include "engine/BlockContext.h"
#include "engine/CInstrumentMixer.h"
#include "engine/CMasterPlan.h"
#include "engine/CTestTone.h"
#include "engine/RenderFormat.h"
#include "platform/CAudioPlanes.h"

namespace quib {

class CMasterSection {
public:
    using Peaks = std::array<CValue, 2>;

    CMasterSection(const StripKernels& stripKernels, const CLevelTables& levelTables, Peaks& shownPeaks)
        : kernels(stripKernels), tables(levelTables), peaks(shownPeaks) {
        crossfade.reserve(CBlockGrid::kMaximumPoints + 1);
    }

    // All buffers silent; while no block is rendered.
    void Clear() noexcept { planes.Clear(); }

    float* Left() noexcept { return planes.Plane(0); }
    float* Right() noexcept { return planes.Plane(1); }
    const float* Channel(int channel) const noexcept { return planes.Plane(channel); }

    // Plays the automation of the master's settings; gains that nothing was heard with begin on their
    // targets, at first and where playing starts.
    void Plan(const BlockContext& block, EngineSettings& settings) noexcept;
    // The crossfader's gains in the planned block, one entry where they rest.
    std::span<const CrossfadeGains> Crossfade() const noexcept { return crossfade; }
    // Begins the block: the bus, silent, to be mixed into.
    MixBuses Begin(const BlockContext& block) noexcept;
    void RunInserts(const BlockContext& block) noexcept;
    // Only while the transport runs.
    void PlayAudition(const BlockContext& block, const Audition& audition) noexcept;
    void PlayTestTone(const BlockContext& block, bool on) noexcept;
    // Gain, ceiling and meters.
    void Finish(const BlockContext& block) noexcept;
    void ApplyHeadphonesLevel(const BlockContext& block, const EngineSettings& settings) noexcept;

private:
    MasterTargets TargetsOf(const MasterPiece& piece) const noexcept {
        return MakeMasterTargets(piece.level, piece.crossfader, tables);
    }
    void PlanCrossfade(const BlockContext& block) noexcept;
    void RunInsert(CPlugin& insert, std::size_t index, int begin, int end) noexcept;

    const StripKernels& kernels;
    const CLevelTables& tables;
    Peaks& peaks;
    CAudioPlanes planes{2, RenderFormat::kMaximumBlockSize};
    CMasterPlan plan;
    std::vector<CrossfadeGains> crossfade;  // by frame
    MasterState state;
    int silence = -1;  // frames without sound that the master took last; -1: none at all yet
    CTestTone tone;
    float headphonesGain = 1;
};

}  // namespace quib
