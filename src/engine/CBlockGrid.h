// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where steps fall in a block, and the points at which automation acts: the start of every step and every
// kGridFrames frames from there. The grid belongs to the song and not to the blocks, so that what is
// automated sounds the same for every block size. Render thread fills it; the pool reads it.

#include <cstdint>
#include <vector>

#include "engine/RenderFormat.h"
#include "model/InstrumentPlayState.h"

namespace quib {

constexpr int kGridFrames = 64;

struct BlockStep {
    std::int32_t frame = 0;    // of the block; below 0 for the step under way when it began
    std::int32_t samples = 1;  // its length
    std::int32_t step = 0;     // of the song; counted on outside song mode
    float samplesPerStep = 0;  // the length before rounding
    float tempo = 0;           // beats per minute
    bool jumps = false;        // does not follow the step before it in the song
};

struct GridPoint {
    std::int32_t frame = 0;
    std::uint32_t step = 0;  // its place in the list of steps
    float share = 0;         // of the step that has passed; 0 at its start
    bool breaks = false;     // musical time jumps or changes its speed here
};

class CBlockGrid {
public:
    static constexpr std::size_t kMaximumPoints =
        RenderFormat::kMaximumBlockSize / kGridFrames + InstrumentPlayState::kMaximumBlockSteps + 1;

    CBlockGrid();

    void Clear() noexcept;
    // Steps come in order. One too many is left out: the one before it then goes on.
    void AddStep(const BlockStep& step) noexcept;
    // Once all steps are there; playing ends at frame `end`.
    void SetPoints(int end) noexcept;

    const std::vector<BlockStep>& Steps() const noexcept { return steps; }
    const std::vector<GridPoint>& Points() const noexcept { return points; }
    bool Breaks() const noexcept { return breaks; }
    // Frame at which playing ends; 0 in a block that does not play.
    int End() const noexcept { return end; }
    // Song position of a point, in steps.
    float PositionOf(const GridPoint& point) const noexcept {
        return static_cast<float>(steps[point.step].step) + point.share;
    }
    // The step that sounds at a frame; null where none does.
    const BlockStep* StepAt(int frame) const noexcept;

private:
    std::vector<BlockStep> steps;
    std::vector<GridPoint> points;
    bool breaks = false;
    int end = 0;
};

// Share of the step that has passed at a frame of the block.
inline double ShareOf(const BlockStep& step, int frame) noexcept {
    return static_cast<double>(frame - step.frame) / step.samples;
}

}  // namespace quib
