// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What all parts of the song pane share: the time axis, the raster, the height of the lanes, where the
// playhead is and how long the song is. User-interface thread.

#include <algorithm>
#include <cmath>

#include "editors/grid/CTimeGrid.h"
#include "model/SongMarker.h"
#include "model/edits/PlaylistEdits.h"

namespace quib {

enum class ESongSnap { kOff, kStep, kBeat, kBar };

struct SongView {
    static constexpr ZoomLimits kZoom{1, 48};
    static constexpr int kLowestLane = 24;
    static constexpr int kHighestLane = 96;

    CTimeGrid time{kZoom};
    ESongSnap snap = ESongSnap::kBar;
    int laneHeight = kLowestLane;
    double playhead = -1;  // song step; below 0 nothing is shown
    bool playing = false;
    int songEnd = 0;  // steps
    StepRange loop;
    bool loopOn = false;
    SongMarkers markers;

    // Song steps are whole, so the finest raster is a step.
    int Raster() const noexcept {
        if (snap == ESongSnap::kBar) return std::max(1, static_cast<int>(time.meter.StepsPerBar()));
        if (snap == ESongSnap::kBeat) return std::max(1, static_cast<int>(time.meter.StepsPerBeat()));
        return 1;
    }
    int SnapDown(double step, int raster) const noexcept {
        return std::max(0, static_cast<int>(std::floor(step / raster)) * raster);
    }
    int SnapNearest(double step, int raster) const noexcept {
        return std::max(0, static_cast<int>(std::lround(step / raster)) * raster);
    }
    int SnapUp(double step, int raster) const noexcept {
        return std::max(0, static_cast<int>(std::ceil(step / raster)) * raster);
    }
};

}  // namespace quib
