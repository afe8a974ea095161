// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Named places of the song. Plain values.

#include <cstdint>
#include <string>
#include <vector>

namespace quib {

constexpr std::size_t kMostSongMarkers = 1000;

struct SongMarker {
    std::int32_t step = 0;
    std::string name;

    friend bool operator==(const SongMarker&, const SongMarker&) = default;
};

// In the order of their steps, one a step.
using SongMarkers = std::vector<SongMarker>;

// The name at a step; an empty name takes the marker away.
SongMarkers WithMarker(const SongMarkers& markers, std::int32_t step, const std::string& name);

}  // namespace quib
