// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The playing state as windows show it: filled by the render thread after every block, fetched by the
// editing thread through a triple buffer.

#include <array>
#include <cstdint>

#include "engine/BlockContext.h"
#include "engine/CTransport.h"

namespace quib {

struct InstrumentPicture {
    static constexpr std::size_t kShownKeys = 32;

    std::uint32_t id = 0;
    std::int32_t pattern = -1;  // -1 none
    std::int32_t nextPattern = -1;
    std::int32_t step = -1;       // -1 stopped
    std::uint32_t midiCount = 0;  // live messages taken since it was made
    std::uint32_t heldKeyCount = 0;
    std::array<std::uint8_t, kShownKeys> heldKeys{};
};

// Where the balls of the one instrument are that a window shows.
struct BallPicture {
    std::uint32_t instrument = 0;                                                   // 0: none
    std::array<std::array<float, 2>, InstrumentPlayState::kMaximumBalls> places{};  // x and y, 0..127
};

struct PlayPicture {
    bool playing = false;
    std::int32_t beatsToStart = 0;  // that are counted in before it plays; 0 when none are
    std::int32_t globalStep = 0;
    std::int32_t soundingStep = -1;
    std::int32_t maxStepCount = 1;
    float stepFraction = 0;
    std::int64_t sampleCounter = 0;
    std::int64_t endedAt = 0;     // samples from the start of playing to where it last ended by itself
    std::uint32_t midiCount = 0;  // live messages that came in
    PlayTime time;
    BallPicture balls;
    std::size_t instrumentCount = 0;
    std::array<InstrumentPicture, kMaximumInstruments> instruments{};

    // Null when it is not among them.
    const InstrumentPicture* Find(std::uint32_t id) const noexcept;
};

// Where lanes play: at a step of a pattern's slot or of the song's; slot -1: they do not.
struct LanePlace {
    int slot = -1;
    float step = 0;
};
LanePlace LanePlaceOf(const PlayPicture& picture, std::uint32_t instrument, bool song) noexcept;

// Render thread: everything but the count of live messages.
void FillPicture(PlayPicture& shown, const BlockContext& block, const CTransport& transport) noexcept;

}  // namespace quib
