// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CSharedEffects.h"

#include <algorithm>
#include <cmath>

#include "engine/PluginPieces.h"

namespace quib {

namespace {

constexpr int kTailFrames = 100 * 2048;
constexpr float kSilence = 1e-6F;
// A send that is off has come to rest below it.
constexpr float kOffGain = 1.001F * kSilentGain;

float Peak(const float* samples, int frames) noexcept {
    float peak = 0;
    for (int i = 0; i < frames; ++i) peak = std::max(peak, std::abs(samples[i]));
    return peak;
}

}  // namespace

void CSharedEffects::Connect(const BlockContext& block, const CInstrumentMixer& mixer, MixBuses& buses) noexcept {
    for (int send = 0; send < kSendCount; ++send) {
        const auto index = static_cast<std::size_t>(send);
        CPlugin* const effect = block.sharedEffects[index];
        State& state = states[index];
        const float gain = mixer.LargestSend(send);
        state.audible = gain > kAudibleSendGain;
        if (state.audible) state.tail = kTailFrames;
        state.runs = effect != nullptr && effect->CanReplace() && state.tail > 0;
        if (!state.runs) continue;
        std::fill_n(effect->Input(0), block.frames, 0.0F);
        std::fill_n(effect->Input(1), block.frames, 0.0F);
        if (gain <= kOffGain) continue;
        buses.sendLeft[send] = effect->Input(0);
        buses.sendRight[send] = effect->Input(1);
    }
}

void CSharedEffects::Run(const BlockContext& block, float* left, float* right) noexcept {
    for (std::size_t index = 0; index < kSendCount; ++index) {
        CPlugin* const effect = block.sharedEffects[index];
        if (effect != nullptr) RunEffect(*effect, states[index], block, left, right);
    }
}

void CSharedEffects::RunEffect(CPlugin& effect, State& state, const BlockContext& block, float* left,
                               float* right) const noexcept {
    // Its automation goes on while it is silent.
    RenderInPieces(effect, block, [&](int begin, int end) {
        if (state.runs) effect.Process(end - begin, begin);
    });
    if (!state.runs) return;
    const bool sounds = effect.OutputCount() > 0;
    const float* const wetLeft = effect.Left();
    const float* const wetRight = effect.Right();
    for (int i = 0; sounds && i < block.frames; ++i) {
        left[i] += wetLeft[i];
        right[i] += wetRight[i];
    }
    if (state.audible) return;
    const bool rings = sounds && std::max(Peak(wetLeft, block.frames), Peak(wetRight, block.frames)) > kSilence;
    state.tail = rings ? kTailFrames : state.tail - block.frames;
}

}  // namespace quib
