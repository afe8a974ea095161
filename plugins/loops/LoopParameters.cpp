// SPDX-License-Identifier: GPL-3.0-or-later
#include "loops/LoopParameters.h"

#include <array>

namespace quibplug {

namespace {

constexpr const char* kSyncNames[] = {"Own", "Host"};
constexpr const char* kSpeedNames[] = {"Half", "Plain", "Double"};
constexpr const char* kStretchNames[] = {"Slices", "Smooth"};
constexpr const char* kPlayNames[] = {"Gate", "One Shot", "Toggle"};

constexpr std::array<ParameterSpec, kLoopParameterCount> kParameters = {{
    {"Volume", "dB", Curve::kGain, 0, 2, 1},
    {"Pan", "%", Curve::kLinear, -100, 100, 0},
    {"Sync", "", Curve::kStepped, 0, 1, 1, kSyncNames},
    {"Speed", "", Curve::kStepped, 0, 2, 1, kSpeedNames},
    {"Stretch", "", Curve::kStepped, 0, 1, 0, kStretchNames},
    {"Play", "", Curve::kStepped, 0, 2, 0, kPlayNames},
    {"Tune", "st", Curve::kLinear, -12, 12, 0},
    {"Slice Decay", "ms", Curve::kExponential, 20, 10000, 10000},
    {"Fade", "ms", Curve::kExponential, 2, 2000, 8},
    {"Low Cut", "Hz", Curve::kExponential, 10, 5000, 10},
    {"High Cut", "Hz", Curve::kExponential, 100, 20000, 20000},
    {"Velocity", "%", Curve::kLinear, 0, 100, 60},
}};

constexpr ParameterValue kSmooth[] = {{kLoopStretch, 1}, {kLoopFade, 20}};
constexpr ParameterValue kChopped[] = {{kLoopSliceDecay, 90}};
constexpr ParameterValue kHalfTime[] = {{kLoopSpeed, 0}, {kLoopTune, -5}};
constexpr ParameterValue kDoubleTime[] = {{kLoopSpeed, 2}, {kLoopSliceDecay, 250}};
constexpr ParameterValue kTelephone[] = {{kLoopLowCut, 500}, {kLoopHighCut, 2800}, {kLoopVolume, 1.4f}};
constexpr ParameterValue kDeep[] = {{kLoopTune, -7}, {kLoopHighCut, 3500}};
constexpr ParameterValue kOnce[] = {{kLoopPlay, 1}};

constexpr std::array<ProgramSpec, 8> kPrograms = {{
    {"Slices", {}},
    {"Smooth", kSmooth},
    {"Chopped", kChopped},
    {"Half Time", kHalfTime},
    {"Double Time", kDoubleTime},
    {"Telephone", kTelephone},
    {"Deep", kDeep},
    {"Once", kOnce},
}};

}  // namespace

std::span<const ParameterSpec> LoopParameters() { return kParameters; }
std::span<const ProgramSpec> LoopPrograms() { return kPrograms; }

}  // namespace quibplug
