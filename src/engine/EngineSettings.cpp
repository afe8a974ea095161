// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EngineSettings.h"

#include <algorithm>

namespace quib {

CValue* EngineSetting(EngineSettings& settings, int lane) noexcept {
    switch (lane) {
        case 0:
            return &settings.masterLevel;
        case 1:
            return &settings.crossfader;
        case 2:
            return &settings.masterInsertOn[0];
        case 3:
            return &settings.masterInsertOn[1];
        case 4:
            return &settings.tempo;
        default:
            return nullptr;
    }
}

int LaunchSteps(const EngineSettings& settings) noexcept {
    const int beat = std::max(1, settings.stepsPerBeat.Get());
    if (settings.launch.Get() == static_cast<int>(ELaunch::kBeat)) return beat;
    const bool bar = settings.launch.Get() == static_cast<int>(ELaunch::kBar);
    return bar ? beat * std::max(1, settings.beatsPerBar.Get()) : 0;
}

float SafeTempo(const EngineSettings& settings) noexcept {
    const float tempo = settings.tempo.Get();
    return tempo > 10.0F ? std::min(tempo, 1000.0F) : 10.0F;
}

}  // namespace quib
