// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The song part of one instrument: which pattern it plays from which step. Published whole.

#include <cstdint>
#include <vector>

namespace quib {

// Steps beyond are not meant.
constexpr std::int32_t kMaximumSongStep = 1 << 24;

struct PlaylistEntry {
    std::int32_t pattern = 0;  // 0..15
    std::int32_t start = 0;    // song step
    std::int32_t repeat = 0;   // not 0: the pattern repeats until another entry begins

    friend bool operator==(const PlaylistEntry&, const PlaylistEntry&) = default;
};

using Playlist = std::vector<PlaylistEntry>;

}  // namespace quib
