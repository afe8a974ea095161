// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A value that goes in a straight line from one control tick to the next. Reading it by the frame
// within the tick keeps it the same however the tick is cut into blocks. For render threads.

namespace quibplug {

struct Ramp {
    float start = 0.0f;
    float end = 0.0f;

    // The coming tick goes from where the last one ended to `target`.
    void Aim(float target) noexcept {
        start = end;
        end = target;
    }
    void Set(float value) noexcept { start = end = value; }
    bool Moving() const noexcept { return start != end; }
    bool Zero() const noexcept { return start == 0.0f && end == 0.0f; }

    // Values of `frames` frames from frame `offset` of a tick of `tickFrames` on.
    void Fill(float* values, int offset, int frames, int tickFrames) const noexcept {
        const float step = (end - start) / static_cast<float>(tickFrames);
        for (int i = 0; i < frames; ++i) values[i] = start + step * static_cast<float>(offset + i + 1);
    }
};

}  // namespace quibplug
