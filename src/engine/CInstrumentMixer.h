// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Renders the instruments of a block, each with its channel strip, on all threads of the pool, and sums
// them in list order into buses: the same bits with any number of threads. The render thread calls; the
// pool works inside Render.

#include <array>
#include <atomic>
#include <span>
#include <vector>

#include "engine/BlockContext.h"
#include "engine/CRenderPool.h"
#include "engine/CStripPieces.h"

namespace quib {

class CInstrumentMixer {
public:
    CInstrumentMixer(const StripKernels& stripKernels, const CLevelTables& levelTables);

    // Every instrument's chain and strip. `gains`: by frame, the first ones at 0.
    void Render(BlockContext& block, CRenderPool& pool, std::span<const CrossfadeGains> gains) noexcept;
    // Adds what was rendered to the buses, and shows the peaks.
    void Mix(const BlockContext& block, const MixBuses& buses) noexcept;

    // The strips of the block, in the order of the instruments that sound.
    std::span<const StripJob> Strips() const noexcept { return jobs; }

private:
    void ListJobs(const BlockContext& block) noexcept;
    void RenderInstrument(int index) noexcept;
    void ProcessGroup(int group) noexcept;

    static void RunTask(void* mixer, int index) noexcept {
        static_cast<CInstrumentMixer*>(mixer)->RenderInstrument(index);
    }

    const StripKernels& kernels;
    const CLevelTables& tables;
    BlockContext* current = nullptr;  // while it is rendered
    std::span<const CrossfadeGains> crossfade;
    std::vector<StripJob> jobs;
    std::vector<int> jobOfInstrument;  // index into `jobs`, -1 for an instrument without sound
    std::array<std::atomic<int>, kMaximumInstruments / kStripGroup> unfinishedInGroup{};
};

}  // namespace quib
