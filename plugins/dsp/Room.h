// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// How long sound travels in a room of a given size: the delays of the feedback network's lines and
// of the early reflections, in frames. Plain values of the render thread.

#include <array>
#include <cmath>

#include "dsp/FastMath.h"

namespace quibplug {

constexpr int kNetworkLines = 16;
constexpr int kEarlyTaps = 9;            // of each side
constexpr float kSpeedOfSound = 343.0f;  // metres a second

// Where a block of at most a tick lies within its tick.
struct TickSpan {
    int offset;
    int frames;
    int tickFrames;
};

// What is left of a sound after `frames` when it falls by 60 dB in `seconds`.
inline float FallOf60Decibels(float frames, float seconds, float sampleRate) noexcept {
    constexpr float kOctaves = 9.9657843f;  // 60 dB
    return Exp2(-kOctaves * frames / (seconds * sampleRate));
}
inline float FallOf60Decibels(int frames, float seconds, float sampleRate) noexcept {
    return FallOf60Decibels(static_cast<float>(frames), seconds, sampleRate);
}

// Of the time that sound takes along the room, spread evenly on a logarithmic scale and then
// shifted a little each, so that no two lines have a simple ratio.
constexpr std::array<float, kNetworkLines> kLineTimes = {0.6127f, 0.9311f, 0.7347f, 1.1093f, 1.5013f, 0.8219f,
                                                         1.3217f, 0.6893f, 1.0471f, 0.6531f, 1.2503f, 0.7791f,
                                                         0.9817f, 1.4029f, 0.8723f, 1.1731f};

struct EarlyTap {
    float time;   // of the time along the room
    float own;    // gain of the tap's own side
    float other;  // gain of the other side
};
constexpr std::array<std::array<EarlyTap, kEarlyTaps>, 2> kEarlyPattern = {{
    {{{0.131f, 0.62f, 0.05f},
      {0.217f, -0.48f, 0.11f},
      {0.309f, 0.43f, -0.17f},
      {0.397f, 0.33f, 0.21f},
      {0.523f, -0.31f, 0.19f},
      {0.641f, 0.26f, -0.22f},
      {0.787f, 0.21f, 0.19f},
      {0.929f, -0.17f, 0.17f},
      {1.103f, 0.13f, -0.14f}}},
    {{{0.151f, 0.60f, 0.05f},
      {0.193f, 0.46f, 0.12f},
      {0.337f, -0.41f, 0.18f},
      {0.419f, 0.34f, -0.20f},
      {0.491f, 0.30f, 0.20f},
      {0.683f, -0.25f, 0.21f},
      {0.751f, 0.22f, -0.18f},
      {0.971f, 0.16f, 0.18f},
      {1.061f, -0.14f, 0.13f}}},
}};

struct Room {
    std::array<int, kNetworkLines> lines{};
    std::array<std::array<int, kEarlyTaps>, 2> early{};

    // Along which the network's lines are laid. Those of a small room alone would ring in a few dozen
    // modes, as a pipe does.
    static float LineMetres(float metres) noexcept {
        constexpr float kLeast = 8.0f;
        return std::sqrt(metres * metres + kLeast * kLeast);
    }
    // `metres` along the room.
    static Room OfSize(float metres, float sampleRate) noexcept {
        const float frames = metres / kSpeedOfSound * sampleRate;
        const float lineFrames = LineMetres(metres) / kSpeedOfSound * sampleRate;
        Room room;
        for (std::size_t i = 0; i < room.lines.size(); ++i) {
            room.lines[i] = static_cast<int>(std::lround(kLineTimes[i] * lineFrames));
        }
        for (std::size_t side = 0; side < 2; ++side) {
            for (std::size_t i = 0; i < kEarlyTaps; ++i) {
                room.early[side][i] = static_cast<int>(std::lround(kEarlyPattern[side][i].time * frames));
            }
        }
        return room;
    }
    bool operator==(const Room&) const = default;
};

}  // namespace quibplug
