// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/CInstrument.h"

#include <atomic>

namespace quib {

namespace {

std::atomic<std::uint32_t> lastId{0};

std::uint32_t NextId() noexcept { return lastId.fetch_add(1, std::memory_order_relaxed) + 1; }

}  // namespace

CInstrument::CInstrument() : id(NextId()) {}

EStepNumberMode SelectedStepNumberMode(const CInstrument& instrument) noexcept {
    for (int mode = 3; mode >= 1; --mode) {
        if (instrument.stepNumberModes[static_cast<std::size_t>(mode - 1)].IsOn()) {
            return static_cast<EStepNumberMode>(mode);
        }
    }
    return EStepNumberMode::kLoop;
}

void SelectStepNumberMode(CInstrument& instrument, EStepNumberMode mode) noexcept {
    for (int candidate = 1; candidate <= 3; ++candidate) {
        instrument.stepNumberModes[static_cast<std::size_t>(candidate - 1)].Set(
            candidate == static_cast<int>(mode) ? 1.0F : 0.0F);
    }
}

bool UpdateEqualizer(CInstrument& instrument, int band, double sampleRate) noexcept {
    return instrument.eqPending.TryPush(DesignEqBand(instrument.strip, band, sampleRate));
}

}  // namespace quib
