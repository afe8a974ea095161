// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Step playback: moves the transport through a block, chooses every instrument's pattern and step at
// each step boundary, schedules notes with sample accuracy and hands those due in the block to the
// instruments' event lists. Render thread only.

#include "engine/BlockContext.h"
#include "engine/CRandom.h"
#include "engine/CTransport.h"

namespace quib {

class CSequencer {
public:
    explicit CSequencer(CRandom& randomSource) noexcept : random(randomSource) {}

    // Advances by the block. Does nothing while the transport is stopped: waiting notes stay.
    void Advance(BlockContext& block, const EngineSettings& settings, CTransport& transport) noexcept;

    // Makes every instrument begin its current pattern at the next boundary.
    static void StartPatterns(BlockContext& block, const CTransport& transport) noexcept;
    // Brings an instrument that was not in the last blocks to where it would be; what it played then is
    // forgotten, sounding notes end.
    static void Rejoin(CInstrument& instrument, const CTransport& transport) noexcept;
    // Stops the transport at frame `offset` of the block.
    static void Stop(BlockContext& block, CTransport& transport, int offset) noexcept;
    // Ends all sounding notes at frame `offset` and forgets those that wait.
    static void ReleaseNotes(BlockContext& block, int offset) noexcept;

private:
    void RunStep(BlockContext& block, const EngineSettings& settings, CTransport& transport) noexcept;
    void RunInstrument(BlockInstrument& entry, const BlockContext& block, const CTransport& transport) noexcept;
    // What a step boundary means to instruments in pattern mode.
    struct Boundary {
        bool atBeat = false;
        bool synchroEnds = false;
        bool launches = false;  // waiting patterns begin here
        bool launchesAtEnd = true;
    };
    void AdvancePattern(CInstrument& instrument, const Boundary& boundary, bool forceEnd) noexcept;
    void EndPattern(CInstrument& instrument, bool launches) noexcept;
    void EvolveBalls(BlockInstrument& entry, const BlockContext& block) noexcept;

    CRandom& random;
};

// Pattern that an instrument plays in song mode at `globalStep`, and the step inside it; sets step -1
// where the playlist is silent.
void FollowPlaylist(CInstrument& instrument, int globalStep) noexcept;

// Lets a note sound from sample `on` to sample `off` of the block, counted on beyond it. Where notes of a key
// meet, the earlier one ends where the later one begins. With no room left it is dropped.
void ScheduleNote(InstrumentPlayState& play, int key, int velocity, std::int64_t on, std::int64_t off) noexcept;

// Schedules the notes of the instrument's current step; the boundary lies `offset` samples into the block.
void ScheduleStepNotes(CInstrument& instrument, int offset, int stepSamples) noexcept;

}  // namespace quib
