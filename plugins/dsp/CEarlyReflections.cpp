// SPDX-License-Identifier: GPL-3.0-or-later
#include "dsp/CEarlyReflections.h"

#include "dsp/CPluginBase.h"

namespace quibplug {

void CEarlyReflections::Allocate(float largestMetres, float sampleRate) noexcept {
    const float longestSeconds = 1.2f * largestMetres / kSpeedOfSound;
    for (CDelayLine& side : m_sides) side.Allocate(static_cast<int>(longestSeconds * sampleRate));
}

void CEarlyReflections::Clear() noexcept {
    for (CDelayLine& side : m_sides) side.Clear();
}

void CEarlyReflections::Add(const Room& from, const Room& to, const float* shares, const float* gains, float* left,
                            float* right, int frames) const noexcept {
    float sums[2][CPluginBase::kMaximumTickFrames] = {};
    float tapped[CPluginBase::kMaximumTickFrames];
    for (std::size_t side = 0; side < 2; ++side) {
        for (std::size_t tap = 0; tap < kEarlyTaps; ++tap) {
            const EarlyTap& pattern = kEarlyPattern[side][tap];
            m_sides[side].ReadBetween(tapped, from.early[side][tap], to.early[side][tap], shares, frames);
            for (int i = 0; i < frames; ++i) {
                sums[side][i] += pattern.own * tapped[i];
                sums[1 - side][i] += pattern.other * tapped[i];
            }
        }
    }
    for (int i = 0; i < frames; ++i) {
        left[i] += gains[i] * sums[0][i];
        right[i] += gains[i] * sums[1][i];
    }
}

void CEarlyReflections::Write(const float* left, const float* right, int frames) noexcept {
    m_sides[0].Write(left, frames);
    m_sides[1].Write(right, frames);
}

}  // namespace quibplug
