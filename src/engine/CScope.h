// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Captures the master output for the oscilloscope, triggered at a rising zero crossing of the mono sum.
// The render thread captures, a window arms the capture and fetches finished pictures. Costs nothing
// while it is not shown.

#include <array>
#include <atomic>
#include <vector>

#include "model/sharing/CTripleBuffer.h"

namespace quib {

class CScope {
public:
    static constexpr int kCaptureFrames = 32768;
    static constexpr int kPictureFrames = 2048;

    struct Picture {
        std::array<float, kPictureFrames> left{};
        std::array<float, kPictureFrames> right{};
    };

    // Window thread.
    void Show(bool on) noexcept { shown.store(on, std::memory_order_relaxed); }
    // Asks for a new capture.
    void Arm() noexcept { armed.store(true, std::memory_order_relaxed); }
    // The newest picture if there is a new one; null otherwise.
    const Picture* Fetch() noexcept { return pictures.Update() ? &pictures.Latest() : nullptr; }

    // Render thread.
    void Capture(const float* left, const float* right, int frames) noexcept;

private:
    void Store(float left, float right) noexcept;

    std::atomic<bool> shown{false};
    std::atomic<bool> armed{false};
    CTripleBuffer<Picture> pictures;

    // Render thread only.
    int captureIndex = 0;
    int counter = 0;
    float previousSum = 0;
};

}  // namespace quib
