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

// Frames of the block from the first to behind the last one with something in them.
struct FrameRange {
    int first = 0;
    int end = 0;

    bool IsEmpty() const noexcept { return end <= first; }
    void Include(FrameRange other) noexcept {
        if (other.IsEmpty()) return;
        *this = IsEmpty() ? other : FrameRange{std::min(first, other.first), std::max(end, other.end)};
    }
};

FrameRange Above(const float* samples, int frames, float threshold) noexcept {
    const auto above = [&](float sample) { return std::abs(sample) > threshold; };
    const float* const first = std::find_if(samples, samples + frames, above);
    const float* end = samples + frames;
    while (end > first && !above(end[-1])) --end;
    return {static_cast<int>(first - samples), static_cast<int>(end - samples)};
}

// Where a smoothed send of any strip is above the threshold.
FrameRange SentRange(std::span<const StripJob> strips, std::size_t send, int frames, float threshold) noexcept {
    FrameRange sent;
    for (const StripJob& strip : strips) {
        if (strip.sendMask[send] != 0) {
            sent.Include(Above(strip.planes.sendGain[send], frames, threshold));
        } else if (strip.state->sendGain[send] > threshold) {
            return {0, frames};
        }
    }
    return sent;
}

}  // namespace

// To the frame, so that blocks make no difference to what an effect hears.
void CSharedEffects::Connect(const BlockContext& block, const CInstrumentMixer& mixer, MixBuses& buses) noexcept {
    for (std::size_t index = 0; index < kSendCount; ++index) {
        CPlugin* const effect = block.sharedEffects[index];
        if (effect == nullptr || !effect->CanReplace()) continue;
        State& state = states[index];
        const FrameRange audible = SentRange(mixer.Strips(), index, block.frames, kAudibleSendGain);
        const bool rings = state.tail > 0;
        state.first = rings || audible.IsEmpty() ? 0 : audible.first;
        state.end =
            audible.IsEmpty() ? std::min(block.frames, state.tail) : std::min(block.frames, audible.end + kTailFrames);
        state.tail = audible.IsEmpty() ? state.tail - state.end : kTailFrames - (state.end - audible.end);
        if (state.end <= state.first) continue;
        std::fill_n(effect->Input(0), block.frames, 0.0F);
        std::fill_n(effect->Input(1), block.frames, 0.0F);
        const FrameRange sent = SentRange(mixer.Strips(), index, block.frames, kOffGain);
        state.sentFrom = sent.first;
        state.sentTo = sent.end;
        if (sent.IsEmpty()) continue;
        buses.sendLeft[index] = effect->Input(0);
        buses.sendRight[index] = effect->Input(1);
    }
}

void CSharedEffects::Run(const BlockContext& block, float* left, float* right) noexcept {
    for (std::size_t index = 0; index < kSendCount; ++index) {
        CPlugin* const effect = block.sharedEffects[index];
        if (effect != nullptr && effect->CanReplace()) RunEffect(*effect, states[index], block, left, right);
    }
}

void CSharedEffects::RunEffect(CPlugin& effect, State& state, const BlockContext& block, float* left,
                               float* right) noexcept {
    const bool runs = state.end > state.first;
    for (int channel = 0; runs && channel < 2; ++channel) {
        std::fill_n(effect.Input(channel), state.sentFrom, 0.0F);
        std::fill(effect.Input(channel) + state.sentTo, effect.Input(channel) + block.frames, 0.0F);
    }
    // Its automation goes on while it is silent.
    RenderInPieces(effect, block, [&](int begin, int end) {
        const int first = std::max(begin, state.first);
        const int next = std::min(end, state.end);
        if (next > first) effect.Process(next - first, first);
    });
    if (!runs || effect.OutputCount() == 0) return;
    const float* const wetLeft = effect.Left();
    const float* const wetRight = effect.Right();
    for (int i = state.first; i < state.end; ++i) {
        left[i] += wetLeft[i];
        right[i] += wetRight[i];
    }
    // What still rings is not cut off.
    if (state.tail >= kTailFrames) return;
    FrameRange heard = Above(wetLeft + state.first, state.end - state.first, kSilence);
    heard.Include(Above(wetRight + state.first, state.end - state.first, kSilence));
    if (!heard.IsEmpty()) state.tail = std::max(state.tail, kTailFrames - (state.end - state.first - heard.end));
}

}  // namespace quib
