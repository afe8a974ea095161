// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CInstrumentMixer.h"

#include <algorithm>
#include <utility>

#include "engine/InstrumentChain.h"

namespace quib {

namespace {

constexpr std::int32_t kDrumMachineId = 0x31366378;
// Output pair of the drum machine for a send, behind its main pair.
constexpr int SendOutput(int send) noexcept { return 2 * send + 2; }

}  // namespace

CInstrumentMixer::CInstrumentMixer(const StripKernels& stripKernels, const CLevelTables& levelTables)
    : kernels(stripKernels), tables(levelTables) {
    jobs.reserve(kMaximumInstruments);
    jobOfInstrument.reserve(kMaximumInstruments);
}

void CInstrumentMixer::Render(BlockContext& block, CRenderPool& pool, CrossfadeGains gains) noexcept {
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
    RenderChain(entry, *current);
    const int job = jobOfInstrument[static_cast<std::size_t>(index)];
    if (job < 0) return;
    PrepareStrip(entry, jobs[static_cast<std::size_t>(job)]);
    // Whoever brings the last chain of a group to its end works on the strips of the group.
    const int group = job / kStripGroup;
    if (unfinishedInGroup[static_cast<std::size_t>(group)].fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    const int first = group * kStripGroup;
    const int members = std::min(kStripGroup, static_cast<int>(jobs.size()) - first);
    kernels.processStrips(&jobs[static_cast<std::size_t>(first)], members, current->frames);
}

void CInstrumentMixer::PrepareStrip(const BlockInstrument& entry, StripJob& job) const noexcept {
    CInstrument& instrument = *entry.instrument;
    const ChannelStrip& strip = instrument.strip;
    EqBandUpdate update;
    while (instrument.eqPending.TryPop(update)) ApplyEqUpdate(instrument.play.strip, update);

    const vst2::AEffect& effect = std::as_const(*entry.plugin).Effect();
    StripInput values{ValuesOf(strip), strip.soloMuted.Get()};
    values.hasSendOutputs = effect.uniqueId == kDrumMachineId && entry.plugin->OutputCount() >= SendOutput(kSendCount);
    for (int send = 0; values.hasSendOutputs && send < kSendCount; ++send) {
        job.extraLeft[send] = entry.plugin->Output(SendOutput(send));
        job.extraRight[send] = entry.plugin->Output(SendOutput(send) + 1);
    }
    job.inLeft = entry.left;
    job.inRight = entry.right;
    job.state = &instrument.play.strip;
    job.targets = MakeStripTargets(values, tables, crossfade.a, crossfade.b);
    job.planes = MakeStripPlanes(*instrument.play.planes);
    job.inputsStay = true;  // nothing is rendered again before the strips are mixed
}

void CInstrumentMixer::Mix(const BlockContext& block, const MixBuses& buses) noexcept {
    kernels.mixStrips(jobs.data(), static_cast<int>(jobs.size()), buses, 0, block.frames);
    for (const BlockInstrument& entry : block.instruments) {
        entry.instrument->strip.peak.Set(entry.instrument->play.strip.peak);
    }
}

}  // namespace quib
