// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The master's settings over a block: played from its automation before anything is rendered, since strips
// follow the crossfader. Render thread.

#include <array>
#include <vector>

#include "engine/BlockContext.h"

namespace quib {

// Settings from a frame of the block on.
struct MasterPiece {
    std::int32_t frame = 0;
    float level = 0;
    float crossfader = 0;
    std::array<bool, kInsertCount> insertOn{};
};

class CMasterPlan {
public:
    CMasterPlan() { pieces.reserve(CBlockGrid::kMaximumPoints + 1); }

    // Sets what is automated; at the end of the block the settings have their last values.
    void Play(const BlockContext& block, EngineSettings& settings) noexcept;

    // By frame, the first one at 0.
    const std::vector<MasterPiece>& Pieces() const noexcept { return pieces; }
    // Calls `part(piece, begin, end)` for what the pieces take of a stretch of frames.
    template <class Part>
    void ForEach(int begin, int end, Part&& part) const noexcept {
        for (std::size_t index = 0; index < pieces.size(); ++index) {
            const int first = std::max(begin, pieces[index].frame);
            const int next = index + 1 < pieces.size() ? std::min(end, pieces[index + 1].frame) : end;
            if (next > first) part(pieces[index], first, next);
        }
    }

private:
    void Add(const EngineSettings& settings, int frame) noexcept;

    std::vector<MasterPiece> pieces;
};

}  // namespace quib
