// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CTransport.h"

#include <algorithm>
#include <cmath>

namespace quib {

void CTransport::SetTempo(double sampleRate, int stepsPerBeat, float beatsPerMinute) noexcept {
    tempo = beatsPerMinute;
    const int divisor = std::max(stepsPerBeat, 1);
    samplesPerStep = static_cast<float>(sampleRate * 60.0 / divisor / static_cast<double>(tempo));
    stepSamples = std::max(1, static_cast<std::int32_t>(std::lrint(samplesPerStep)));  // ties to even
}

double CTransport::QuarterNotes(int stepsPerBeat) const noexcept {
    const double steps = soundingStep + 1 - static_cast<double>(samplesToNextStep) / stepSamples;
    return std::max(0.0, steps) / std::max(stepsPerBeat, 1);
}

void CTransport::UpdateStepFraction() noexcept {
    stepFraction = 1.0F - static_cast<float>(samplesToNextStep) / static_cast<float>(stepSamples);
}

}  // namespace quib
