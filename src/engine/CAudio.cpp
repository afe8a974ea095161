// SPDX-License-Identifier: GPL-3.0-or-later
// The engine's side of the editing thread: construction, formats, publication.
#include "engine/CAudio.h"

#include <stdexcept>

namespace quib {

CAudio::CAudio(std::uint32_t seed) : kernels(BestStripKernels()), songTime(seed) { Prepare(format); }

CAudio::~CAudio() = default;

bool CAudio::IsUsable(double sampleRate, int blockSize) noexcept {
    return blockSize >= 1 && blockSize <= RenderFormat::kMaximumBlockSize && sampleRate >= 8000.0 &&
           sampleRate <= 768000.0;
}

void CAudio::Prepare(const RenderFormat& wanted) {
    if (!IsUsable(wanted.sampleRate, wanted.blockSize) || wanted.threads < 1) {
        throw std::invalid_argument("unusable render format");
    }
    const CBlockGuard::CRebuild rebuild(guard);
    clock.CloseOpenBlock();
    if (!pool || pool->Threads() != wanted.threads || format.realTime != wanted.realTime)
        pool = std::make_unique<CRenderPool>(wanted.threads, wanted.realTime);
    format = wanted;
    environment.sampleRate = wanted.sampleRate;
    environment.blockSize = wanted.blockSize;
    master.Clear();
    taps.Prepare(wanted.blockSize);
    for (const auto& instrument : *instruments.ForEdit()) RebuildInstrument(*instrument, format);
    for (const auto& insert : masterInserts) PreparePlugin(insert);
    for (const auto& effect : sharedEffects) PreparePlugin(effect);
}

void CAudio::PublishInstruments(InstrumentList list) {
    instruments.Publish(std::make_shared<const InstrumentList>(std::move(list)), graveyard);
}

}  // namespace quib
