// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Highest and lowest of a sound for drawing: of any span of frames fast, by blocks made once. Any one thread.

#include <algorithm>
#include <vector>

#include "export/SoundClip.h"

namespace quib {

class CWavePeaks {
public:
    static constexpr std::int64_t kBlock = 256;  // frames

    struct Span {
        float low = 0;
        float high = 0;
    };

    explicit CWavePeaks(const SoundClip& sound) : clip(sound) {
        for (std::int64_t first = 0; first < clip.Frames(); first += kBlock) {
            blocks.push_back(Exact(first, std::min(first + kBlock, clip.Frames())));
        }
    }

    // Of both sides together, in [first, end).
    Span Of(std::int64_t first, std::int64_t end) const {
        first = std::clamp<std::int64_t>(first, 0, clip.Frames());
        end = std::clamp<std::int64_t>(end, first, clip.Frames());
        if (end - first < 2 * kBlock) return Exact(first, end);
        Span span = blocks[static_cast<std::size_t>(first / kBlock)];
        for (std::int64_t block = first / kBlock + 1; block < end / kBlock; ++block) {
            const Span& one = blocks[static_cast<std::size_t>(block)];
            span = {std::min(span.low, one.low), std::max(span.high, one.high)};
        }
        return span;
    }

private:
    Span Exact(std::int64_t first, std::int64_t end) const {
        Span span;
        for (auto frame = static_cast<std::size_t>(first); frame < static_cast<std::size_t>(end); ++frame) {
            span.low = std::min({span.low, clip.left[frame], clip.right[frame]});
            span.high = std::max({span.high, clip.left[frame], clip.right[frame]});
        }
        return span;
    }

    const SoundClip& clip;
    std::vector<Span> blocks;
};

}  // namespace quib
