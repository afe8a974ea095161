// SPDX-License-Identifier: GPL-3.0-or-later
#include "dsp/CDelayLine.h"

#include <algorithm>
#include <bit>
#include <exception>

#include "dsp/CPluginBase.h"

namespace quibplug {

bool CDelayLine::Allocate(int longestFrames) noexcept {
    const std::size_t size = std::bit_ceil(static_cast<std::size_t>(longestFrames) + kMargin);
    try {
        if (size != m_samples.size()) std::vector<float>(size).swap(m_samples);
    } catch (const std::exception&) {
        return false;
    }
    m_position = 0;
    m_written = 0;
    return true;
}

void CDelayLine::Read(float* to, int delay, int frames) const noexcept {
    auto left = static_cast<std::size_t>(frames);
    auto age = static_cast<std::size_t>(delay);
    if (age > m_written) {
        const std::size_t zeros = std::min(left, age - m_written);
        to = std::fill_n(to, zeros, 0.0f);
        left -= zeros;
        age -= zeros;
    }
    const std::size_t start = (m_position - age) & (m_samples.size() - 1);
    const std::size_t first = std::min(left, m_samples.size() - start);
    to = std::copy_n(m_samples.data() + start, first, to);
    std::copy_n(m_samples.data(), left - first, to);
}

void CDelayLine::ReadBetween(float* to, int first, int second, const float* shares, int frames) const noexcept {
    Read(to, first, frames);
    if (shares == nullptr || first == second) return;
    float other[CPluginBase::kMaximumTickFrames];
    Read(other, second, frames);
    for (int i = 0; i < frames; ++i) to[i] += shares[i] * (other[i] - to[i]);
}

float CDelayLine::At(double delay) const noexcept {
    const auto whole = static_cast<std::size_t>(delay);
    const auto x = static_cast<float>(delay - static_cast<double>(whole));
    const float before = Past(whole - 1);
    const float from = Past(whole);
    const float to = Past(whole + 1);
    const float after = Past(whole + 2);
    const float outer = (1.0f - x) * x * (1.0f / 6.0f);
    const float inner = (1.0f + x) * (2.0f - x) * 0.5f;
    return inner * ((1.0f - x) * from + x * to) - outer * ((2.0f - x) * before + (1.0f + x) * after);
}

void CDelayLine::Write(const float* from, int frames) noexcept {
    const auto count = static_cast<std::size_t>(frames);
    const std::size_t first = std::min(count, m_samples.size() - m_position);
    std::copy_n(from, first, m_samples.data() + m_position);
    std::copy_n(from + first, count - first, m_samples.data());
    m_position = (m_position + count) & (m_samples.size() - 1);
    m_written = std::min(m_written + count, m_samples.size());
}

}  // namespace quibplug
