// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A snapshot of an instrument's sound and patterns that can be recalled. Editing thread only; what it
// holds is immutable and shared with the instrument it was taken from.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "model/BallSound.h"
#include "model/CEventLanes.h"
#include "model/CPattern.h"
#include "model/StripSettings.h"

namespace quib {

using StateImage = std::vector<std::byte>;

struct Preset {
    StripValues strip = InitialStripValues();
    std::int32_t stepNumber = kDefaultStepCount;
    std::int32_t stepNumberMode = 0;  // 0 none, 1..3 the switch that is on
    float stepNumberModeValue = 0;
    std::int32_t patternSelected = 0;
    std::array<std::shared_ptr<const CPattern>, kPatternCount> patterns;
    std::array<std::int32_t, kPatternCount> patternUsed{};
    CEventLanes midiLanes;
    CEventLanes mixLanes;
    CEventLanes pluginLanes;
    std::vector<std::int32_t> eventPluginParameters;
    BallSoundList ballSounds;
    std::int32_t keyboardOn = 0;
    std::int32_t keyboardPosition = 0;
    std::vector<std::int32_t> keyboardKeys;
    std::shared_ptr<const StateImage> pluginState;  // null: none held
    std::array<std::shared_ptr<const StateImage>, kInsertCount> insertState;
};

}  // namespace quib
