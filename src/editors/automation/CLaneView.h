// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Places and values of a lane as pixels of its control: scale strip at the left, header above, the curve below.
// Skin pixels from the control's upper left corner. User-interface thread.

#include <optional>

#include "editors/grid/CTimeGrid.h"
#include "model/edits/LaneEdits.h"

namespace quib {

class CLaneView {
public:
    static constexpr int kScale = 55;
    static constexpr int kHeader = 24;
    static constexpr int kInset = 10;  // above the greatest and below the least value

    void Resize(int newWidth, int newHeight) noexcept {
        width = newWidth;
        height = newHeight;
        time.SetWidth(width > kScale ? width - kScale : 0);
    }
    int Width() const noexcept { return width; }
    int Height() const noexcept { return height; }
    double XOf(double step) const noexcept { return kScale + time.XOf(step); }
    double StepAt(double x) const noexcept { return time.StepAt(x - kScale); }
    double YOf(float value) const noexcept;
    float ValueAt(double y) const noexcept;
    // The value of a pixel's height.
    float ValuePerPixel() const noexcept;
    // The nearest point within the reach of a hand.
    std::optional<std::uint32_t> PointAt(const LaneState& state, int x, int y) const;
    // The point that begins the part of the line which is at that place.
    std::optional<std::uint32_t> SegmentAt(const LaneState& state, int x, int y) const;

    CTimeGrid time;
    LaneLimits limits;

private:
    static constexpr int kReach = 8;         // pixels
    static constexpr int kSegmentReach = 4;  // above and below the line

    double Room() const noexcept { return height - kHeader - 2.0 * kInset > 1 ? height - kHeader - 2.0 * kInset : 1; }

    int width = 0;
    int height = 0;
};

}  // namespace quib
