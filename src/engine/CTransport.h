// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where playback is. Render thread only; windows see it through the picture of the engine.

#include <cstdint>

namespace quib {

struct CTransport {
    bool playing = false;
    bool changed = true;             // started, stopped or jumped since the last block
    std::int64_t sampleCounter = 0;  // samples since the start of playing
    std::int64_t endedAt = 0;        // likewise, where playing last ended by itself
    std::int32_t samplesToNextStep = 0;
    std::int32_t globalStep = 0;     // song step that the next boundary runs
    std::int32_t soundingStep = -1;  // step that the last boundary ran, counted on outside song mode
    std::int32_t stopStep = -1;      // playing ends where this step would begin; -1 none
    std::int32_t maxStepCount = 1;   // longest playing pattern + 1
    std::uint32_t run = 0;           // grows when playing starts or ends
    std::int32_t ran = 0;            // steps since playing started
    std::uint64_t stepTime = 0;      // nanoseconds at which the last step began
    bool launchHeld = false;         // patterns that wait for beat or bar wait on
    bool loopJumped = false;         // sounding notes end at the next boundary

    // Timing of the step under way, set when it begins; a change of tempo acts with the next one.
    float tempo = 120.0F;             // beats per minute
    float samplesPerStep = 5512.5F;   // exact, for positions
    std::int32_t stepSamples = 5512;  // rounded, for scheduling
    float stepFraction = 0;           // share of it that has passed at the end of the block

    // The step that the next boundary runs.
    std::int32_t NextStep(bool songMode) const noexcept { return songMode ? globalStep : soundingStep + 1; }
    void SetTempo(double sampleRate, int stepsPerBeat, float beatsPerMinute) noexcept;
    // Where playing stands, in quarter notes.
    double QuarterNotes(int stepsPerBeat) const noexcept;
    void UpdateStepFraction() noexcept;
};

}  // namespace quib
