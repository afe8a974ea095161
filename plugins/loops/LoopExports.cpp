// SPDX-License-Identifier: GPL-3.0-or-later
#include "loops/LoopExports.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <exception>

#include "loops/CLoopsPlugin.h"

namespace quibplug {

namespace {

// Frame plus one, so that zero is silence.
std::array<std::atomic<int>, 128> framesOfKeys{};

// The loops at 44.1 kHz as they were counted last. The host's threads.
std::shared_ptr<const LoopSet> told;

void Count() noexcept {
    try {
        told = SharedLoops(44100.0);
        CLoopsPlugin::FollowFolders();
    } catch (const std::exception&) {
        told = nullptr;  // no memory
    }
}

const Loop* ToldLoop(std::intptr_t index) noexcept {
    if (told == nullptr) Count();
    if (told == nullptr || index < 0 || index >= static_cast<std::intptr_t>(told->size())) return nullptr;
    return (*told)[static_cast<std::size_t>(index)].get();
}

}  // namespace

void TellLoopFrame(int key, int frame) noexcept {
    framesOfKeys[static_cast<std::size_t>(key)].store(frame + 1, std::memory_order_relaxed);
}

}  // namespace quibplug

std::intptr_t GetWaveNumber() {
    quibplug::Count();
    return quibplug::told == nullptr ? 0 : static_cast<std::intptr_t>(quibplug::told->size());
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
