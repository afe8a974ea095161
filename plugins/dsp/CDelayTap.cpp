// SPDX-License-Identifier: GPL-3.0-or-later
#include "dsp/CDelayTap.h"

#include <algorithm>
#include <cmath>

#include "dsp/CPluginBase.h"

namespace quibplug {

namespace {

constexpr float kFadeSeconds = 0.03f;
constexpr float kTimeGlideSeconds = 0.12f;  // time constant
constexpr double kFastest = 0.5;            // frames per frame: half to one and a half times the pitch
constexpr double kSlowest = 1.0 / 2048.0;   // frames per frame, so that it arrives

}  // namespace

void CDelayTap::Snap(int delay) noexcept {
    m_target = delay;
    m_present = delay;
    m_gliding = false;
    m_fade.Stop();
}

void CDelayTap::Aim(int delay, TimeChange change, float sampleRate) noexcept {
    if (m_fade.Running()) return;
    m_gliding = false;
    if (m_present == delay) return;
    m_target = delay;
    m_gliding = change == TimeChange::kGlide;
    m_glideShare = OnePoleShare(kTimeGlideSeconds, sampleRate);
    if (!m_gliding) m_fade.Start(kFadeSeconds, sampleRate);
}

int CDelayTap::Longest() const noexcept { return std::max(m_target, static_cast<int>(m_present) + 1); }

void CDelayTap::Read(const CDelayLine& line, float* to, int frames) noexcept {
    if (m_gliding) {
        ReadGliding(line, to, frames);
        return;
    }
    ReadStill(line, to, frames);
    if (!m_fade.Running()) return;
    float target[CPluginBase::kMaximumTickFrames];
    float shares[CPluginBase::kMaximumTickFrames];
    line.Read(target, m_target, frames);
    m_fade.Fill(shares, frames);
    for (int i = 0; i < frames; ++i) to[i] += shares[i] * (target[i] - to[i]);
    m_fade.Advance(frames);
    if (!m_fade.Running()) m_present = m_target;
}

// A glide that was given up leaves a delay between two samples.
void CDelayTap::ReadStill(const CDelayLine& line, float* to, int frames) const noexcept {
    const auto whole = static_cast<int>(m_present);
    if (m_present == whole) {
        line.Read(to, whole, frames);
    } else {
        for (int i = 0; i < frames; ++i) to[i] = line.At(m_present - i);
    }
}

void CDelayTap::ReadGliding(const CDelayLine& line, float* to, int frames) noexcept {
    for (int i = 0; i < frames; ++i) {
        const double distance = m_target - m_present;
        const double speed = std::clamp(std::fabs(distance) * static_cast<double>(m_glideShare), kSlowest, kFastest);
        m_present = std::fabs(distance) <= speed ? m_target : m_present + std::copysign(speed, distance);
        to[i] = line.At(m_present - i);
    }
}

}  // namespace quibplug
