// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The sample buffers of one side of a plug-in: a group of channels that ends at a page nobody may
// touch, taken once at load time and zero-filled. Channels stand a little more than 64 KiB apart, so
// that equal places of two channels do not share a cache set. Any thread that owns the plug-in's call.

#include <vector>

#include "platform/CGuardedMemory.h"

namespace quib {

class CPluginBuffers {
public:
    static constexpr int kFrames = 16384;

    CPluginBuffers() = default;
    explicit CPluginBuffers(int channels);

    float* Channel(int channel) const noexcept { return pointers[static_cast<std::size_t>(channel)]; }
    int Channels() const noexcept { return static_cast<int>(pointers.size()); }
    // Array of channel pointers as the interface wants it.
    float** Pointers() noexcept { return pointers.data(); }

    // `frames` samples of every channel to zero, from sample `first` on.
    void Clear(int frames, int first = 0) noexcept;

private:
    CGuardedMemory memory;
    std::vector<float*> pointers;
};

}  // namespace quib
