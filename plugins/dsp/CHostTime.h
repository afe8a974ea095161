// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the host says about musical time, asked once a block on the render thread. A host that knows
// none, or tells nonsense, counts as one at 120 beats per minute that stands still.

#include <atomic>

#include "Vst2.h"

namespace quibplug {

class CHostTime {
public:
    explicit CHostTime(vst2::HostCallback host) noexcept : m_host(host) {}

    void Read(vst2::AEffect* effect) noexcept;

    // Beats per minute, 10..1000. Any thread.
    double Tempo() const noexcept { return m_tempo.load(std::memory_order_relaxed); }

private:
    const vst2::HostCallback m_host;
    std::atomic<double> m_tempo = 120.0;
};

}  // namespace quibplug
