// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Short MIDI messages on their way to a plug-in. Render thread.

#include <cstddef>
#include <cstdint>

namespace quib {

// Most messages that one plug-in takes in one block.
constexpr std::size_t kMaximumBlockEvents = 4096;

constexpr int kHighestKey = 127;
constexpr int kHighestVelocity = 127;
constexpr int kNoteOff = 128;
constexpr int kNoteOn = 144;
constexpr int kControlChange = 176;
constexpr int kSustainPedal = 64;  // controllers
constexpr int kAllNotesOff = 123;
constexpr int kProgramChange = 192;
constexpr int kChannelPressure = 208;
constexpr int kPitchBend = 224;

// A message with its place in the current block.
struct BlockEvent {
    std::uint8_t status;
    std::uint8_t data1;
    std::uint8_t data2;
    std::int32_t deltaFrames;  // 0 .. block size - 1
};

// A live message with the nanosecond at which it came in; 0: it is due at once.
struct LiveEvent {
    std::uint8_t status;
    std::uint8_t data1;
    std::uint8_t data2;
    std::uint64_t time;
};

}  // namespace quib
