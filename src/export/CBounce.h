// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Plays a span of what an engine holds as fast as it can, without a device, and hands on every block. One
// thread, which is the engine's render thread and posts its commands meanwhile.

#include <cstdint>
#include <functional>
#include <string>

#include "engine/CAudio.h"

namespace quib {

struct BounceSpan {
    int firstStep = 0;        // of the song
    int endStep = 0;          // where playing ends, counted as firstStep is
    std::int64_t frames = 0;  // length in place of endStep; 0: none
    double tailSeconds = 10;  // at most, until silence; 0: cut where playing ends
};

class CBounce {
public:
    // Told after every block how many of its frames belong to the span; false ends it.
    using Take = std::function<bool(int frames)>;
    // Told the share done, 0..1; false ends it.
    using Progress = std::function<bool(double share)>;

    explicit CBounce(CAudio& engine) : audio(engine) {}

    // False with `error` when the engine renders for somebody else; false alone when one of the others
    // has ended it.
    bool Run(const BounceSpan& span, const Take& take, const Progress& progress, std::string& error);
    // Handed on.
    std::int64_t Frames() const noexcept { return frames; }
    // Of these, up to where playing ended.
    std::int64_t PlayedFrames() const noexcept { return played; }

private:
    bool Play(const BounceSpan& span, const Take& take, const Progress& progress, std::string& error);
    bool PlayTail(double seconds, const Take& take, std::string& error);
    bool RenderBlock(std::string& error);

    CAudio& audio;
    std::int64_t frames = 0;
    std::int64_t played = 0;
    std::int64_t silentFrames = 0;
};

}  // namespace quib
