// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What one instrument gives before its strip over the whole song, rendered in advance. Immutable, and any thread may
// read it. Where it is silent it takes no memory, and a right side that is like the left one takes none of its own.

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace quib {

// A step of the song as it was rendered.
struct FrozenStep {
    std::int64_t frame = 0;    // at which it begins
    std::int32_t samples = 0;  // its length
    float tempo = 0;           // beats per minute
};

// What all of a take was rendered at.
struct FrozenFormat {
    double sampleRate = 0;  // hertz
    double quartersPerStep = 0;
    double quartersPerBar = 0;
    int channels = 2;  // a stereo pair, and behind it those for the sends of a plug-in that feeds them

    friend bool operator==(const FrozenFormat&, const FrozenFormat&) = default;
};

// Samples are kept in units: so many frames of one channel.
struct FrozenContent {
    static constexpr int kUnitFrames = 4096;

    FrozenFormat format;
    bool endsSilent = false;           // nothing is heard behind the last step, however long the song is
    std::vector<FrozenStep> steps;     // from step 0 of the song on, without a gap
    std::vector<std::int32_t> places;  // of the unit of each channel, one set after the other; -1: silent
    std::vector<float> samples;        // the units
};

class CFrozenTake {
public:
    static constexpr int kMaximumChannels = 10;

    // `rendered` agrees with itself.
    explicit CFrozenTake(FrozenContent rendered) : content(std::move(rendered)) {}

    const FrozenFormat& Format() const noexcept { return content.format; }
    bool EndsSilent() const noexcept { return content.endsSilent; }
    std::span<const FrozenStep> Steps() const noexcept { return content.steps; }
    // Of what is heard, in frames.
    std::int64_t Length() const noexcept;
    // Bytes of memory.
    std::size_t Size() const noexcept { return content.samples.size() * sizeof(float); }

    // Frames of a channel from `frame` on, as many as lie in one unit and no more than `count`; null: all silent.
    struct Run {
        const float* samples = nullptr;
        int frames = 0;
    };
    Run At(int channel, std::int64_t frame, int count) const noexcept;
    // Writes frames of a channel; zero where there is nothing.
    void Copy(int channel, std::int64_t frame, int count, float* to) const noexcept;

private:
    FrozenContent content;
};

}  // namespace quib
