// SPDX-License-Identifier: GPL-3.0-or-later
#include "dsp/CHostTime.h"

namespace quibplug {

namespace {
constexpr double kUsualTempo = 120.0;
constexpr double kSlowestTempo = 10.0;
constexpr double kFastestTempo = 1000.0;
}  // namespace

void CHostTime::Read(vst2::AEffect* effect) noexcept {
    const std::intptr_t answer = m_host(effect, vst2::audioMasterGetTime, 0, vst2::kVstTempoValid, nullptr, 0.0f);
    const auto* time =
        reinterpret_cast<const vst2::VstTimeInfo*>(answer);  // NOLINT(performance-no-int-to-ptr): the interface
    const bool known = time != nullptr && (time->flags & vst2::kVstTempoValid) != 0 && time->tempo >= kSlowestTempo &&
                       time->tempo <= kFastestTempo;
    m_tempo.store(known ? time->tempo : kUsualTempo, std::memory_order_relaxed);
}

}  // namespace quibplug
