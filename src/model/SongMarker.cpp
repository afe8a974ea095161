// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/SongMarker.h"

#include <algorithm>

namespace quib {

SongMarkers WithMarker(const SongMarkers& markers, std::int32_t step, const std::string& name) {
    SongMarkers next = markers;
    std::erase_if(next, [step](const SongMarker& marker) { return marker.step == step; });
    if (name.empty() || next.size() >= kMostSongMarkers) return next;
    const auto place =
        std::find_if(next.begin(), next.end(), [step](const auto& marker) { return marker.step > step; });
    next.insert(place, {step, name});
    return next;
}

}  // namespace quib
