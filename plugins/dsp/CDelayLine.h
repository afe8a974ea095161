// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A ring of past samples of one channel, read and written in runs shorter than the delay. Belongs to
// one render thread; only Allocate() allocates. Clearing costs nothing: what is older than the last
// Clear() reads as zero without being overwritten.

#include <cstddef>
#include <vector>

namespace quibplug {

class CDelayLine {
public:
    // Room for delays of up to `longestFrames`; clears. False, and unchanged, without memory for it.
    bool Allocate(int longestFrames) noexcept;
    void Clear() noexcept { m_written = 0; }

    int LongestDelay() const noexcept { return static_cast<int>(m_samples.size()) - kMargin; }

    // The `frames` samples that came `delay` before those that will be written next, `frames` <=
    // `delay` <= LongestDelay().
    void Read(float* to, int delay, int frames) const noexcept;

    // The same between two delays: `shares` of the second one, frame by frame; null for the first alone.
    void ReadBetween(float* to, int first, int second, const float* shares, int frames) const noexcept;

    // One sample from `delay` before the next one to be written, within 2..LongestDelay(), between
    // samples by the cubic through the four about it (Lagrange).
    float At(double delay) const noexcept;

    void Write(const float* from, int frames) noexcept;

private:
    static constexpr int kMargin = 8;

    float Past(std::size_t delay) const noexcept {
        return delay <= m_written ? m_samples[(m_position - delay) & (m_samples.size() - 1)] : 0.0f;
    }

    std::vector<float> m_samples = std::vector<float>(256);  // a power of two
    std::size_t m_position = 0;                              // of the next sample to be written
    std::size_t m_written = 0;                               // since Clear(), at most the size
};

}  // namespace quibplug
