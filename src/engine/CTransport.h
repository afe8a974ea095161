// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where playback is. Render thread only; windows see it through the picture of the engine.

#include <cstdint>

namespace quib {

struct CTransport {
    bool playing = false;
    bool changed = true;             // started, stopped or jumped since the last block
    std::int64_t sampleCounter = 0;  // samples since the start of playing
    std::int32_t samplesToNextStep = 0;
    std::int32_t globalStep = 0;     // song step that the next boundary runs
    std::int32_t soundingStep = -1;  // step that the last boundary ran, counted on outside song mode
    std::int32_t stopStep = -1;      // playing ends where this step would begin; -1 none
    std::int32_t maxStepCount = 1;   // longest playing pattern + 1
    std::uint64_t stepTime = 0;      // nanoseconds at which the last step began
    bool loopJumped = false;         // sounding notes end at the next boundary

    // Timing of the current block, set once its tempo is known.
    double sampleRate = 44100.0;
    float samplesPerStep = 5512.5F;   // exact, for positions
    std::int32_t stepSamples = 5512;  // rounded, for scheduling
    float stepFraction = 0;           // share of the current step that has passed

    // The step that the next boundary runs.
    std::int32_t NextStep(bool songMode) const noexcept { return songMode ? globalStep : soundingStep + 1; }
    void SetTempo(double rate, int stepsPerBeat, float tempo) noexcept;
    // Position in quarter notes at the start of the block that is about to run.
    double QuarterNotes(int stepsPerBeat) const noexcept;
    void UpdateStepFraction() noexcept;
    // The step that sounds and its share that has passed, in whole samples from the start of the song.
    double SamplePlace() const noexcept;
};

}  // namespace quib
