// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A set of equally long sample buffers (planes) in one allocation, each on its own cache line. Made when
// a device starts; then belongs to whoever renders. Starts as silence, never grows.

#include <cstddef>
#include <memory>

namespace quib {

class CAudioPlanes {
public:
    static constexpr std::size_t kAlignment = 64;

    // Sets that are read side by side want different colours (a running number will do): planes at the
    // same offset within 4 KiB evict each other from the first-level cache, which costs a sum over many
    // of them 2.5 times its time. Planes of one set are spread out by themselves.
    CAudioPlanes(int planes, int frames, int colour = 0);

    int Planes() const noexcept { return planes; }
    int Frames() const noexcept { return frames; }

    // A plane may be written up to its padding: 16 samples behind its last frame.
    float* Plane(int index) const noexcept { return base + static_cast<std::size_t>(index) * stride; }

    void Clear() noexcept;

private:
    struct CFreeAligned {
        void operator()(float* memory) const noexcept;
    };

    int planes;
    int frames;
    std::size_t stride;
    std::size_t total;
    std::unique_ptr<float[], CFreeAligned> memory;
    float* base;
};

}  // namespace quib
