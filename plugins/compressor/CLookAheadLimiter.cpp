// SPDX-License-Identifier: GPL-3.0-or-later
#include "compressor/CLookAheadLimiter.h"

#include <algorithm>
#include <cmath>
#include <exception>

#include "dsp/CPluginBase.h"

namespace quibplug {

namespace {
constexpr float kLookAheadSeconds = 0.002f;
constexpr float kOne = 1073741824.0f;  // 2^30
}  // namespace

bool CLookAheadLimiter::Allocate(float sampleRate) noexcept {
    const auto window = static_cast<std::size_t>(kLookAheadSeconds * sampleRate) + 1;
    try {
        if (window != m_released.size()) {
            std::vector<Need> needs(window);
            std::vector<std::int64_t>(window).swap(m_released);
            needs.swap(m_needs);
        }
    } catch (const std::exception&) {
        return false;
    }
    const int longest = LatencyFrames() + CPluginBase::kMaximumTickFrames;
    const bool allocated = m_left.Allocate(longest) && m_right.Allocate(longest);
    Reset();
    return allocated;
}

void CLookAheadLimiter::Reset() noexcept {
    m_left.Clear();
    m_right.Clear();
    m_leftPeaks.Reset();
    m_rightPeaks.Reset();
    m_firstNeed = m_needCount = m_place = 0;
    m_frame = 0;
    m_level = 1.0f;
    std::fill(m_released.begin(), m_released.end(), static_cast<std::int64_t>(kOne));
    m_sum = static_cast<std::int64_t>(kOne) * static_cast<std::int64_t>(m_released.size());
}

// The minimum of the last window: what is not smaller than a newer need can never be it again.
std::int64_t CLookAheadLimiter::SmallestNeed(std::int64_t gain) noexcept {
    const std::size_t window = m_needs.size();
    if (m_needCount > 0 && m_needs[m_firstNeed].frame + static_cast<std::int64_t>(window) <= m_frame) {
        m_firstNeed = m_firstNeed + 1 < window ? m_firstNeed + 1 : 0;
        --m_needCount;
    }
    while (m_needCount > 0 && m_needs[(m_firstNeed + m_needCount - 1) % window].gain >= gain) --m_needCount;
    m_needs[(m_firstNeed + m_needCount++) % window] = {gain, m_frame++};
    return m_needs[m_firstNeed].gain;
}

float CLookAheadLimiter::Process(float* left, float* right, const float* ceilings, float release, int frames) noexcept {
    float delayedLeft[CPluginBase::kMaximumTickFrames];
    float delayedRight[CPluginBase::kMaximumTickFrames];
    m_left.Write(left, frames);
    m_right.Write(right, frames);
    m_left.Read(delayedLeft, LatencyFrames() + frames, frames);
    m_right.Read(delayedRight, LatencyFrames() + frames, frames);
    const float perWindow = 1.0f / (kOne * static_cast<float>(m_released.size()));
    float peaks[CPluginBase::kMaximumTickFrames]{};
    m_leftPeaks.Raise(left, peaks, frames);
    m_rightPeaks.Raise(right, peaks, frames);
    float loudest = 0.0f;
    for (int i = 0; i < frames; ++i) {
        loudest = std::max(loudest, std::max(std::fabs(left[i]), std::fabs(right[i])));
        const float needed = peaks[i] > ceilings[i] ? ceilings[i] / peaks[i] : 1.0f;
        const auto smallest = static_cast<float>(SmallestNeed(static_cast<std::int64_t>(needed * kOne))) / kOne;
        m_level = std::min(smallest, m_level + release * (1.0f - m_level));
        const auto released = static_cast<std::int64_t>(m_level * kOne);
        m_sum += released - m_released[m_place];
        m_released[m_place] = released;
        m_place = m_place + 1 < m_released.size() ? m_place + 1 : 0;
        const float gain = static_cast<float>(m_sum) * perWindow;
        // The clamp takes rounding away, and what a falling ceiling catches of sound on its way.
        left[i] = std::clamp(delayedLeft[i] * gain, -ceilings[i], ceilings[i]);
        right[i] = std::clamp(delayedRight[i] * gain, -ceilings[i], ceilings[i]);
    }
    return loudest;
}

}  // namespace quibplug
