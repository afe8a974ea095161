// SPDX-License-Identifier: GPL-3.0-or-later
// The engine's side of the editing thread: construction, formats, publication.
#include "engine/CAudio.h"

#include <algorithm>
#include <stdexcept>

namespace quib {

namespace {

void PreparePlugin(const CPublished<PluginSlot>& slot) {
    if (const auto& plugin = slot.ForEdit()->plugin) plugin->Prepare();
}

void PrepareOutdatedPlugin(const CPublished<PluginSlot>& slot) {
    if (const auto& plugin = slot.ForEdit()->plugin; plugin && !plugin->IsPrepared()) plugin->Prepare();
}

// Keeps the render thread out while the engine is rebuilt, and waits for the block under way.
class CBusyScope {
public:
    CBusyScope(std::atomic<int>& busyCounter, const std::atomic<bool>& renderFlag) : busy(busyCounter) {
        busy.fetch_add(1, std::memory_order_seq_cst);
        while (renderFlag.load(std::memory_order_seq_cst)) std::this_thread::yield();
    }
    ~CBusyScope() { busy.fetch_sub(1, std::memory_order_seq_cst); }
    CBusyScope(const CBusyScope&) = delete;
    CBusyScope& operator=(const CBusyScope&) = delete;

private:
    std::atomic<int>& busy;
};

}  // namespace

CAudio::CAudio(std::uint32_t seed) : kernels(BestStripKernels()), random(seed) {
    jobs.reserve(kMaximumInstruments);
    jobOfInstrument.reserve(kMaximumInstruments);
    Prepare(format);
    busy.store(0);
}

CAudio::~CAudio() = default;

bool CAudio::IsUsable(double sampleRate, int blockSize) noexcept {
    return blockSize >= 1 && blockSize <= RenderFormat::kMaximumBlockSize && sampleRate >= 8000.0 &&
           sampleRate <= 768000.0;
}

void CAudio::Prepare(const RenderFormat& wanted) {
    if (!IsUsable(wanted.sampleRate, wanted.blockSize) || wanted.threads < 1) {
        throw std::invalid_argument("unusable render format");
    }
    const CBusyScope rebuild(busy, rendering);
    clock.CloseOpenBlock();
    if (!pool || pool->Threads() != wanted.threads || format.realTime != wanted.realTime)
        pool = std::make_unique<CRenderPool>(wanted.threads, wanted.realTime);
    format = wanted;
    environment.sampleRate = wanted.sampleRate;
    environment.blockSize = wanted.blockSize;
    master.Clear();
    interleaved.assign(static_cast<std::size_t>(wanted.blockSize) * 2, 0);
    for (const auto& instrument : *instruments.ForEdit()) {
        PreparePlugin(instrument->plugin);
        for (const auto& insert : instrument->inserts) PreparePlugin(insert);
        RebuildInstrument(*instrument);
    }
    for (const auto& insert : masterInserts) PreparePlugin(insert);
    for (const auto& effect : sharedEffects) PreparePlugin(effect);
}

void CAudio::PrepareInstrument(CInstrument& instrument) const {
    const auto& planes = instrument.play.planes;
    // The block under way may still play one that was removed just now: its playing state is left alone.
    if (!planes || planes->Frames() != format.blockSize || instrument.preparedRate != format.sampleRate)
        RebuildInstrument(instrument);
    for (int band = 0; band < kEqBandCount; ++band) UpdateEqualizer(instrument, band, format.sampleRate);
    PrepareOutdatedPlugin(instrument.plugin);
    for (const auto& insert : instrument.inserts) PrepareOutdatedPlugin(insert);
}

void CAudio::RebuildInstrument(CInstrument& instrument) const {
    instrument.preparedRate = format.sampleRate;
    instrument.play.planes =
        std::make_unique<CAudioPlanes>(StripPlanes::kCount, format.blockSize, static_cast<int>(instrument.Id()));
    for (EqBandUpdate outdated; instrument.eqPending.TryPop(outdated);) {}
    for (int band = 0; band < kEqBandCount; ++band) {
        ApplyEqUpdate(instrument.play.strip, DesignEqBand(instrument.strip, band, format.sampleRate));
    }
}

void CAudio::PublishInstruments(InstrumentList list) {
    instruments.Publish(std::make_shared<const InstrumentList>(std::move(list)), graveyard);
}

}  // namespace quib
