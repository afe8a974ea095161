// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/CPluginBuffers.h"

#include <algorithm>
#include <cstddef>

namespace quib {

namespace {
constexpr std::size_t kChannelBytes = CPluginBuffers::kFrames * sizeof(float);
// A few cache lines; an odd number, so that neighbouring channels spread over the sets.
constexpr std::size_t kPadding = std::size_t{64} * 11;
}  // namespace

CPluginBuffers::CPluginBuffers(int channels) {
    const auto count = static_cast<std::size_t>(channels);
    if (count == 0) return;
    memory = CGuardedMemory(count * kChannelBytes + (count - 1) * kPadding);
    pointers.reserve(count);
    for (std::size_t channel = 0; channel < count; ++channel) {
        pointers.push_back(reinterpret_cast<float*>(memory.Data() + channel * (kChannelBytes + kPadding)));
    }
}

void CPluginBuffers::Clear(int frames, int first) noexcept {
    for (float* const channel : pointers) std::fill_n(channel + first, frames, 0.0F);
}

}  // namespace quib
