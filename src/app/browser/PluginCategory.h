// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a plug-in is good for, as far as its names and the category that it gives itself tell. Pure functions.

#include <QString>

namespace quib {

struct PluginEntry;

enum class EPluginCategory {
    // Instruments
    kSynthesiser,
    kDrums,
    kKeys,
    kSampler,
    // Effects
    kDelay,
    kReverb,
    kDynamics,
    kFilter,
    kModulation,
    kDistortion,
    kPitch,
    kSpace,
    kAnalyser,
    kUtility
};

constexpr int kPluginCategoryCount = 14;

EPluginCategory CategoryOf(const PluginEntry& entry);
bool IsInstrumentCategory(EPluginCategory category);
// In the chosen language.
QString CategoryName(EPluginCategory category);

}  // namespace quib
