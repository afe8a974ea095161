// SPDX-License-Identifier: GPL-3.0-or-later
#include "loops/LoopExports.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <exception>

#include "loops/LoopFolder.h"

namespace quibplug {

namespace {

// Frame plus one, so that zero is silence.
std::array<std::atomic<int>, 128> framesOfKeys{};

// The loops at 44.1 kHz, kept from the first question on. Null without memory.
const LoopSet* ToldLoops() noexcept {
    try {
        static const std::shared_ptr<const LoopSet> loops = SharedLoops(44100.0);
        return loops.get();
    } catch (const std::exception&) {
        return nullptr;
    }
}

const Loop* ToldLoop(std::intptr_t index) noexcept {
    const LoopSet* loops = ToldLoops();
    if (loops == nullptr || index < 0 || index >= static_cast<std::intptr_t>(loops->size())) return nullptr;
    return &(*loops)[static_cast<std::size_t>(index)];
}

}  // namespace

void TellLoopFrame(int key, int frame) noexcept {
    framesOfKeys[static_cast<std::size_t>(key)].store(frame + 1, std::memory_order_relaxed);
}

}  // namespace quibplug

std::intptr_t GetWaveNumber() {
    const quibplug::LoopSet* loops = quibplug::ToldLoops();
    return loops == nullptr ? 0 : static_cast<std::intptr_t>(loops->size());
}

std::intptr_t GetWaveInfos(std::intptr_t index, quibplug::LoopInfo* info) {
    const quibplug::Loop* loop = quibplug::ToldLoop(index);
    if (loop == nullptr || info == nullptr) return 0;
    *info = {};
    std::memcpy(info->name, loop->name.data(), std::min(loop->name.size(), sizeof info->name - 1));
    info->tempo = loop->Tempo();
    info->beats = loop->beats;
    info->sampleRate = loop->sampleRate;
    info->frames = loop->frames;
    info->key = loop->key;
    info->slices = static_cast<std::int32_t>(loop->slices.size());
    return 1;
}

std::intptr_t GetWaveBegin(std::intptr_t index, std::intptr_t slice) {
    const quibplug::Loop* loop = quibplug::ToldLoop(index);
    if (loop == nullptr || slice < 0 || slice >= static_cast<std::intptr_t>(loop->slices.size())) return -1;
    return loop->slices[static_cast<std::size_t>(slice)];
}

std::intptr_t GetWaveCompter(std::intptr_t index) {
    const quibplug::Loop* loop = quibplug::ToldLoop(index);
    if (loop == nullptr) return -1;
    return quibplug::framesOfKeys[static_cast<std::size_t>(loop->key)].load(std::memory_order_relaxed) - 1;
}
