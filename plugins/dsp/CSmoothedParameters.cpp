// SPDX-License-Identifier: GPL-3.0-or-later
#include "dsp/CSmoothedParameters.h"

#include <cmath>

#include "dsp/FastMath.h"

namespace quibplug {

namespace {
constexpr float kGlideSeconds = 0.008f;
constexpr float kClose = 1e-5f;  // of the parameter's range
}  // namespace

CSmoothedParameters::CSmoothedParameters(const CProgramBank& bank)
    : m_bank(bank),
      m_targets(static_cast<std::size_t>(bank.ParameterCount())),
      m_present(m_targets.size()),
      m_real(m_targets.size()) {
    Snap();
}

void CSmoothedParameters::SetTickRate(float ticksPerSecond) noexcept {
    m_share = OnePoleShare(kGlideSeconds, ticksPerSecond);
}

// The generation is read before the values: a value set meanwhile shows up again at the next tick.
bool CSmoothedParameters::ReadTargets() noexcept {
    const std::uint32_t generation = m_bank.Generation();
    if (generation == m_generation) return false;
    m_generation = generation;
    for (std::size_t i = 0; i < m_targets.size(); ++i) m_targets[i] = m_bank.Value(static_cast<int>(i));
    return true;
}

bool CSmoothedParameters::Snap() noexcept {
    if (!ReadTargets() && !m_moving) return false;
    for (std::size_t i = 0; i < m_targets.size(); ++i) {
        m_present[i] = m_targets[i];
        m_real[i] = m_bank.Parameter(static_cast<int>(i)).ToReal(m_present[i]);
    }
    m_moving = false;
    return true;
}

bool CSmoothedParameters::Advance() noexcept {
    if (!ReadTargets() && !m_moving) return false;
    bool changed = false;
    m_moving = false;
    for (std::size_t i = 0; i < m_targets.size(); ++i) {
        const float distance = m_targets[i] - m_present[i];
        if (distance == 0.0f) continue;
        const ParameterSpec& spec = m_bank.Parameter(static_cast<int>(i));
        const bool arrived = spec.curve == Curve::kStepped || std::fabs(distance) < kClose;
        m_present[i] = arrived ? m_targets[i] : m_present[i] + distance * m_share;
        m_real[i] = spec.ToReal(m_present[i]);
        m_moving = m_moving || !arrived;
        changed = true;
    }
    return changed;
}

}  // namespace quibplug
