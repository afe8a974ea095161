// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Turns the way of a dragging mouse into a value: from where the drag began, ten times finer with Shift or
// Ctrl, without a jump when these keys go down or up meanwhile. User-interface thread.

namespace quib {

class CDragValue {
public:
    // `position` in pixels, growing in the direction of growing values.
    void Begin(float startValue, int position) noexcept;
    // `valuePerPixel` of a normal drag. The result is not limited to any range.
    float Move(int position, float valuePerPixel, bool fine) noexcept;

private:
    float start = 0;
    float last = 0;
    int startPosition = 0;
    int lastPosition = 0;
    bool fine = false;
};

// Keeps a value at `detent` in a small band above it, so that it is easy to find; `maximum` stays the maximum.
float WithDetent(float value, float detent, float maximum) noexcept;

}  // namespace quib
