// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One instrument's channel strip in a block: left to its group in one piece, unless a setting changes within
// the block; then rendered piece by piece as its chain comes along. Any render thread, one at a time.

#include <span>

#include "engine/BlockContext.h"
#include "engine/strip/StripKernels.h"

namespace quib {

// Smoothed gains of the crossfader's sides from a frame of the block on, as strips are to follow them.
struct CrossfadeGains {
    std::int32_t frame = 0;
    float a = 0;
    float b = 0;
};

class CStripPieces {
public:
    // `course`: by frame, the first one at 0. `stripJob`: null for an instrument without sound.
    CStripPieces(const StripKernels& stripKernels, const CLevelTables& levelTables, const BlockContext& context,
                 std::span<const CrossfadeGains> course, StripJob* stripJob) noexcept
        : kernels(stripKernels), tables(levelTables), block(context), crossfade(course), job(stripJob) {}

    // What the hand has set of the equaliser; before the block's automation, which has the last word.
    static void TakeEqualizer(CInstrument& instrument) noexcept;
    // The crossfader moves the strip within the block; at this frame.
    bool CrossfadeActs(const BlockInstrument& entry) const noexcept;
    bool CrossfadeActsAt(const BlockInstrument& entry, int frame) const noexcept;
    // Renders up to frame `end` what is not rendered yet.
    void RenderTo(const BlockInstrument& entry, int end) noexcept;
    // After the chain: the rest of a strip in pieces, or the whole one made ready for its group.
    void Finish(const BlockInstrument& entry) noexcept;

private:
    // With what holds for the frames from `begin` to `end`.
    void Fill(const BlockInstrument& entry, int end) noexcept;

    const StripKernels& kernels;
    const CLevelTables& tables;
    const BlockContext& block;
    std::span<const CrossfadeGains> crossfade;
    StripJob* job;
    int begin = 0;
};

}  // namespace quib
