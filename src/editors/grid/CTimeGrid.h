// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The time axis of an editor: zoom, scroll, snap, lines, and following the playhead. Pixels are skin pixels
// from the left edge of the grid. The scroll is whole pixels, so that pixel and step go over into each other
// exactly. Knows nothing of what is edited and draws nothing. User-interface thread.

#include <vector>

#include "editors/grid/Snap.h"

namespace quib {

// The widest and the narrowest step.
struct ZoomLimits {
    int least = 3;
    int most = 96;

    int Clamp(int pixels) const noexcept { return pixels < least ? least : pixels > most ? most : pixels; }
    int Doubled(int pixels) const noexcept { return Clamp(pixels * 2); }
    int Halved(int pixels) const noexcept { return Clamp(pixels / 2); }
};

enum class ELine { kStep, kBeat, kBar };

struct GridLine {
    int step = 0;
    ELine kind = ELine::kStep;
};

class CTimeGrid {
public:
    explicit CTimeGrid(ZoomLimits zoomLimits = {}) : limits(zoomLimits) {}

    // --- Pixels and steps

    int StepWidth() const noexcept { return stepWidth; }
    double XOf(double step) const noexcept { return step * stepWidth - scroll; }
    double StepAt(double x) const noexcept { return (x + scroll) / stepWidth; }
    double FirstStep() const noexcept { return StepAt(0); }
    // Where the visible range ends.
    double EndStep() const noexcept { return StepAt(width); }

    // --- Size, scroll, zoom

    void SetWidth(int pixels) noexcept;
    int Width() const noexcept { return width; }
    // How far one can scroll: all that there is to see, in steps.
    void SetExtent(double steps) noexcept;
    double Extent() const noexcept { return extent; }
    int Scroll() const noexcept { return scroll; }
    int MaximumScroll() const noexcept;
    // By hand: following waits for the next start. True when the view moved.
    bool ScrollTo(int pixels) noexcept;
    // The step under `anchor` stays there within a pixel, as far as the start allows it. True on a change.
    bool SetStepWidth(int pixels, int anchor) noexcept;
    bool ZoomIn(int anchor) noexcept { return SetStepWidth(limits.Doubled(stepWidth), anchor); }
    bool ZoomOut(int anchor) noexcept { return SetStepWidth(limits.Halved(stepWidth), anchor); }

    // --- Snap

    double SnapSteps() const noexcept { return SnapLength(snap, meter); }
    // The last place of the raster at or before `step`; the step itself without a raster.
    float SnapDown(double step) const noexcept;
    float SnapNearest(double step) const noexcept;

    // --- Lines

    // Those in [from, to) steps. Steps closer than 6 pixels have no line of their own, nor beats closer than 4.
    std::vector<GridLine> Lines(double from, double to) const;
    ELine LineOf(int step) const noexcept;

    // --- Following

    // Turns a page when `playStep` is not to be seen. True when the view moved.
    bool Follow(double playStep) noexcept;
    void PlayingStarts() noexcept { followPaused = false; }

    Meter meter;
    Snap snap;
    bool followOn = false;

private:
    bool MoveTo(double pixels) noexcept;

    ZoomLimits limits;
    int stepWidth = 24;
    int scroll = 0;  // pixels
    int width = 0;   // pixels
    double extent = 16;
    bool followPaused = false;
};

}  // namespace quib
