// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CSharedEffects.h"

#include <algorithm>

namespace quib {

namespace {
constexpr int kTailBlocks = 100;
}

void CSharedEffects::Connect(const BlockContext& block, const CInstrumentMixer& mixer, MixBuses& buses) noexcept {
    for (int send = 0; send < kSendCount; ++send) {
        const auto index = static_cast<std::size_t>(send);
        CPlugin* const effect = block.sharedEffects[index];
        runs[index] = Runs(effect, index, mixer.LargestSend(send) > kAudibleSendGain);
        if (!runs[index]) continue;
        buses.sendLeft[send] = effect->Input(0);
        buses.sendRight[send] = effect->Input(1);
        std::fill_n(effect->Input(0), block.frames, 0.0F);
        std::fill_n(effect->Input(1), block.frames, 0.0F);
    }
}

bool CSharedEffects::Runs(const CPlugin* effect, std::size_t index, bool audible) noexcept {
    const bool rings = !audible && tail[index] > 0;
    tail[index] = audible ? kTailBlocks : tail[index] - static_cast<int>(rings);
    return effect != nullptr && effect->CanReplace() && (audible || rings);
}

void CSharedEffects::Run(const BlockContext& block, float* left, float* right) noexcept {
    for (std::size_t index = 0; index < kSendCount; ++index) {
        if (!runs[index]) continue;
        CPlugin& effect = *block.sharedEffects[index];
        effect.SetBlockTime(block.time);
        effect.Process(block.frames);
        if (effect.OutputCount() == 0) continue;
        const float* const wetLeft = effect.Left();
        const float* const wetRight = effect.Right();
        for (int i = 0; i < block.frames; ++i) {
            left[i] += wetLeft[i];
            right[i] += wetRight[i];
        }
    }
}

}  // namespace quib
