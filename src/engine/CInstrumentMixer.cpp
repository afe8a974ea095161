// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CInstrumentMixer.h"

#include <algorithm>
#include <utility>

#include "engine/InstrumentChain.h"

namespace quib {

CInstrumentMixer::CInstrumentMixer(const StripKernels& stripKernels, const CLevelTables& levelTables)
    : kernels(stripKernels), tables(levelTables) {
    jobs.reserve(kMaximumInstruments);
    jobOfInstrument.reserve(kMaximumInstruments);
}

void CInstrumentMixer::Render(BlockContext& block, CRenderPool& pool, std::span<const CrossfadeGains> gains) noexcept {
    current = &block;
    crossfade = gains;
    ListJobs(block);
    const int groups = (static_cast<int>(jobs.size()) + kStripGroup - 1) / kStripGroup;
    for (int group = 0; group < groups; ++group) {
        const int members = std::min(kStripGroup, static_cast<int>(jobs.size()) - group * kStripGroup);
        unfinishedInGroup[static_cast<std::size_t>(group)].store(members, std::memory_order_relaxed);
    }
    pool.Run(&CInstrumentMixer::RunTask, this, static_cast<int>(block.instruments.size()));
}

void CInstrumentMixer::ListJobs(const BlockContext& block) noexcept {
    jobs.clear();
    jobOfInstrument.clear();
    for (const BlockInstrument& entry : block.instruments) {
        const bool sounds = entry.plugin->CanReplace() && entry.plugin->OutputCount() > 0;
        jobOfInstrument.push_back(sounds ? static_cast<int>(jobs.size()) : -1);
        if (sounds) jobs.emplace_back();
    }
}

void CInstrumentMixer::RenderInstrument(int index) noexcept {
    BlockInstrument& entry = current->instruments[static_cast<std::size_t>(index)];
    const int job = jobOfInstrument[static_cast<std::size_t>(index)];
    CStripPieces strip(kernels, tables, *current, crossfade, job < 0 ? nullptr : &jobs[static_cast<std::size_t>(job)]);
    RenderChain(entry, *current, strip);
    if (job < 0) return;
    strip.Finish(entry);
    // Whoever brings the last chain of a group to its end works on the strips of the group.
    const int group = job / kStripGroup;
    if (unfinishedInGroup[static_cast<std::size_t>(group)].fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    ProcessGroup(group);
}

void CInstrumentMixer::ProcessGroup(int group) noexcept {
    const std::size_t end = std::min(jobs.size(), static_cast<std::size_t>((group + 1) * kStripGroup));
    for (std::size_t first = static_cast<std::size_t>(group * kStripGroup); first < end; ++first) {
        std::size_t next = first;
        while (next < end && !jobs[next].isRendered) ++next;
        if (next > first) kernels.processStrips(&jobs[first], static_cast<int>(next - first), current->frames);
        first = next;
    }
}

void CInstrumentMixer::Mix(const BlockContext& block, const MixBuses& buses) noexcept {
    kernels.mixStrips(jobs.data(), static_cast<int>(jobs.size()), buses, 0, block.frames);
    for (const BlockInstrument& entry : block.instruments) {
        entry.instrument->strip.peak.Set(entry.instrument->play.strip.peak);
    }
}

}  // namespace quib
