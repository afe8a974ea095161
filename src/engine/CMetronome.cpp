// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CMetronome.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "engine/CTransport.h"

namespace quib {

namespace {

constexpr double kBeat = 1000;  // hertz
constexpr double kAccent = 1600;
constexpr double kDecay = 0.012;  // seconds
constexpr double kInaudible = 1e-4;

int StepsPerBeat(const EngineSettings& engine) noexcept { return std::max(1, engine.stepsPerBeat.Get()); }
int BeatsPerBar(const EngineSettings& engine) noexcept { return std::max(1, engine.beatsPerBar.Get()); }

// As the steps of what plays are long.
int BeatFrames(const EngineSettings& engine, double sampleRate) noexcept {
    CTransport timing;
    timing.SetTempo(sampleRate, StepsPerBeat(engine), SafeTempo(engine));
    return timing.stepSamples * StepsPerBeat(engine);
}

}  // namespace

void CMetronome::StartCounting(const EngineSettings& engine) noexcept {
    beatsLeft = settings.countIn.Get() * BeatsPerBar(engine) + 1;
    framesToBeat = 0;
}

int CMetronome::Count(BlockContext& block, const EngineSettings& engine) noexcept {
    block.beatsToStart = 0;
    if (!IsCounting()) return -1;
    block.beatFrames = BeatFrames(engine, block.sampleRate);
    int start = -1;
    for (; IsCounting() && framesToBeat < block.frames; framesToBeat += block.beatFrames) {
        if (--beatsLeft == 0) {
            start = framesToBeat;
        } else {
            block.beats.Add({framesToBeat, beatsLeft % BeatsPerBar(engine) == 0});
        }
    }
    framesToBeat -= block.frames;
    block.beatsToStart = beatsLeft;
    return start;
}

void CMetronome::Play(const BlockContext& block, const EngineSettings& engine, float* left, float* right) noexcept {
    int from = 0;
    const auto strike = [&](int frame, bool accented) {
        Sound(from, frame, left, right);
        Strike(accented, block.sampleRate);
        from = frame;
    };
    for (const Beat& beat : block.beats.Items()) strike(beat.frame, beat.accented);
    const int bar = StepsPerBeat(engine) * BeatsPerBar(engine);
    for (const BlockStep& begun : block.grid.Steps()) {
        if (settings.on.IsOn() && begun.frame >= 0 && begun.step % StepsPerBeat(engine) == 0)
            strike(begun.frame, begun.step % bar == 0);
    }
    Sound(from, block.frames, left, right);
}

void CMetronome::Strike(bool accented, double sampleRate) noexcept {
    click = {0, 2 * std::numbers::pi * (accented ? kAccent : kBeat) / sampleRate, 1,
             std::exp(-1 / (kDecay * sampleRate))};
}

void CMetronome::Sound(int from, int to, float* left, float* right) noexcept {
    const auto gain = static_cast<double>(std::clamp(settings.level.Get(), 0.0F, 1.0F));
    for (int frame = from; frame < to && click.envelope > kInaudible; ++frame) {
        const auto value = static_cast<float>(gain * click.envelope * std::sin(click.phase));
        left[frame] += value;
        right[frame] += value;
        click.phase += click.advance;
        click.envelope *= click.decay;
    }
}

}  // namespace quib
