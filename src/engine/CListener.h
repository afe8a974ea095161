// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Hands the master output, both sides as one, to one window while it listens. The render thread writes and never
// waits: what does not fit is dropped and counted. Costs nothing while nobody listens.

#include <atomic>
#include <cstdint>
#include <vector>

namespace quib {

class CListener {
public:
    static constexpr std::size_t kFrames = 1U << 16U;  // more than a second at 48 kHz

    // Window thread. What was there before is forgotten.
    void Listen(bool on) noexcept {
        read = written.load(std::memory_order_acquire);
        taken.store(read, std::memory_order_release);
        listening.store(on, std::memory_order_release);
    }
    // Window thread: appends what has come since the last time.
    void Fetch(std::vector<float>& to) {
        const std::uint64_t end = written.load(std::memory_order_acquire);
        for (; read != end; ++read) to.push_back(frames[read % kFrames]);
        taken.store(read, std::memory_order_release);
    }
    std::uint64_t Dropped() const noexcept { return dropped.load(std::memory_order_relaxed); }

    // Render thread.
    void Take(const float* left, const float* right, int count) noexcept {
        if (!listening.load(std::memory_order_acquire)) return;
        std::uint64_t place = written.load(std::memory_order_relaxed);
        if (place + static_cast<std::uint64_t>(count) - taken.load(std::memory_order_acquire) > kFrames) {
            dropped.fetch_add(static_cast<std::uint64_t>(count), std::memory_order_relaxed);
            return;
        }
        for (int i = 0; i < count; ++i, ++place) frames[place % kFrames] = 0.5F * (left[i] + right[i]);
        written.store(place, std::memory_order_release);
    }

private:
    std::vector<float> frames = std::vector<float>(kFrames);
    std::atomic<bool> listening{false};
    std::atomic<std::uint64_t> written{0};
    std::atomic<std::uint64_t> taken{0};
    std::atomic<std::uint64_t> dropped{0};
    std::uint64_t read = 0;  // window thread
};

}  // namespace quib
