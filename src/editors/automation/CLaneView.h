// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Places and values of a lane as pixels of its control: scale strip at the left, header above, the curve below.
// Skin pixels from the control's upper left corner. The time axis may be that of a grid above. User-interface
// thread.

#include <algorithm>
#include <optional>

#include "editors/grid/CTimeGrid.h"
#include "model/edits/LaneEdits.h"

namespace quib {

class CLaneView {
public:
    static constexpr int kInset = 10;  // above the greatest and below the least value

    // `shared` outlives this and has its width from elsewhere; null: an axis of its own.
    explicit CLaneView(CTimeGrid* shared = nullptr) : time(shared != nullptr ? *shared : own) {}
    CLaneView(const CLaneView&) = delete;
    CLaneView& operator=(const CLaneView&) = delete;

    void Resize(int newWidth, int newHeight) noexcept {
        width = newWidth;
        height = newHeight;
        if (&time == &own) time.SetWidth(width > scaleWidth ? width - scaleWidth : 0);
    }
    int Width() const noexcept { return width; }
    int Height() const noexcept { return height; }
    double XOf(double step) const noexcept { return scaleWidth + time.XOf(step); }
    double StepAt(double x) const noexcept { return time.StepAt(x - scaleWidth); }
    double YOf(float value) const noexcept;
    float ValueAt(double y) const noexcept;
    // The value of a pixel's height.
    float ValuePerPixel() const noexcept;
    // The nearest point within the reach of a hand.
    std::optional<std::uint32_t> PointAt(const LaneState& state, int x, int y) const;
    // The point that begins the part of the line which is at that place.
    std::optional<std::uint32_t> SegmentAt(const LaneState& state, int x, int y) const;

    CTimeGrid& time;
    LaneLimits limits;
    int scaleWidth = 55;
    int headerHeight = 24;  // 0: none

private:
    static constexpr int kReach = 8;         // pixels
    static constexpr int kSegmentReach = 4;  // above and below the line

    double Room() const noexcept { return std::max(1.0, height - headerHeight - 2.0 * kInset); }

    CTimeGrid own;
    int width = 0;
    int height = 0;
};

}  // namespace quib
