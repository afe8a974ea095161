// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the library exports besides its plug-in, so that the program's windows can list the loops and
// follow them. Loops are told by their index, in the order of their keys. The first three are for the
// host's threads, the last for any.

#include <cstdint>

#include "Vst2.h"

namespace quibplug {

struct LoopInfo {
    char name[64];
    double tempo;  // beats per minute
    double beats;
    double sampleRate;
    std::int64_t frames;
    std::int32_t key;
    std::int32_t slices;
};

// Where a loop is, for GetWaveCompter. Render thread.
void TellLoopFrame(int key, int frame) noexcept;

}  // namespace quibplug

// Number of loops in the folders, which are looked through again; every instance follows.
VST2_EXPORT std::intptr_t GetWaveNumber();
// Fills in what is known about a loop; 1, or 0 without such a loop.
VST2_EXPORT std::intptr_t GetWaveInfos(std::intptr_t index, quibplug::LoopInfo* info);
// The frame at which a stroke of a loop begins, or -1 without such a stroke.
VST2_EXPORT std::intptr_t GetWaveBegin(std::intptr_t index, std::intptr_t slice);
// The frame at which a loop is playing, in the instance that has moved it last; -1 while it is silent.
VST2_EXPORT std::intptr_t GetWaveCompter(std::intptr_t index);
