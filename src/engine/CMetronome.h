// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The metronome: a click on every beat of what plays and, before notes are recorded, of the bars that are
// counted in. It is added to what is heard alone: behind the recorder's tap, and off unless somebody turns it
// on. Render thread only.
//   y[n] = gain * exp(-n / (0.012 s * rate)) * sin(2 pi * f * n / rate), f = 1 kHz, on the first beat 1.6 kHz

#include "engine/BlockContext.h"

namespace quib {

// Any thread.
struct MetronomeSettings {
    CValue on;              // switch: it is heard while playing
    CValue level{0.5F};     // gain of the click, 0..1
    CIntegerValue countIn;  // bars before notes are recorded
};

class CMetronome {
public:
    explicit CMetronome(const MetronomeSettings& metronomeSettings) noexcept : settings(metronomeSettings) {}

    // Begins to count in with the block under way.
    void StartCounting(const EngineSettings& engine) noexcept;
    void StopCounting() noexcept { beatsLeft = 0; }
    bool IsCounting() const noexcept { return beatsLeft > 0; }
    // Counts through the block: the frame where playing is to begin, -1 when that is not in it.
    int Count(BlockContext& block, const EngineSettings& engine) noexcept;

    // Adds the clicks of the block whose steps have run.
    void Play(const BlockContext& block, const EngineSettings& engine, float* left, float* right) noexcept;

private:
    // A sound that goes on over the end of a block.
    struct Click {
        double phase = 0;  // radians
        double advance = 0;
        double envelope = 0;
        double decay = 0;
    };

    void Strike(bool accented, double sampleRate) noexcept;
    void Sound(int from, int to, float* left, float* right) noexcept;

    const MetronomeSettings& settings;
    Click click;
    int beatsLeft = 0;  // until playing begins, the one that sounds among them
    int framesToBeat = 0;
};

}  // namespace quib
