// SPDX-License-Identifier: GPL-3.0-or-later
#include "chorus/ChorusParameters.h"

#include <array>

namespace quibplug {

namespace {

constexpr const char* kShapeNames[] = {"Sine", "Triangle"};

constexpr std::array<ParameterSpec, kChorusParameterCount> kParameters = {{
    kMixSpec,
    kLevelSpec,
    kWidthSpec,
    {"Voices", "", Curve::kStepped, 1, kMostChorusVoices, 2},
    {"Rate", "Hz", Curve::kExponential, 0.05f, 8, 0.6f},
    {"Depth", "ms", Curve::kLinear, 0, 10, 3},
    {"Delay", "ms", Curve::kExponential, 1, 30, 7},
    {"Spread", "deg", Curve::kLinear, 0, 180, 90},
    {"Shape", "", Curve::kStepped, 0, 1, 0, kShapeNames},
    {"Low Cut", "Hz", Curve::kExponential, 10, 2000, 120},
    {"High Cut", "Hz", Curve::kExponential, 1000, 20000, 12000},
}};

constexpr ParameterValue kWarmPair[] = {{kChorusVoices, 2}};
constexpr ParameterValue kEnsemble[] = {{kChorusVoices, 4}, {kChorusRate, 0.9f},  {kChorusDepth, 2.4f},
                                        {kChorusDelay, 9},  {kChorusSpread, 120}, {kChorusHighCut, 9000},
                                        {kEffectWidth, 140}};
constexpr ParameterValue kSlowSea[] = {{kChorusVoices, 3}, {kChorusRate, 0.14f},  {kChorusDepth, 7.5f},
                                       {kChorusDelay, 14}, {kChorusSpread, 150},  {kChorusLowCut, 250},
                                       {kChorusShape, 1},  {kChorusHighCut, 8000}};
constexpr ParameterValue kWideAir[] = {{kChorusVoices, 4},  {kChorusRate, 0.35f},   {kChorusDepth, 3},
                                       {kChorusDelay, 18},  {kChorusSpread, 180},   {kChorusLowCut, 700},
                                       {kEffectWidth, 180}, {kChorusHighCut, 18000}};
constexpr ParameterValue kStudioInsert[] = {{kEffectMix, 40}, {kChorusRate, 0.45f}, {kChorusDepth, 2.2f}};
constexpr ParameterValue kElectricPiano[] = {{kEffectMix, 50},     {kChorusVoices, 1}, {kChorusRate, 1.1f},
                                             {kChorusDepth, 2.8f}, {kChorusDelay, 5},  {kChorusSpread, 180}};
constexpr ParameterValue kBassThickener[] = {{kEffectMix, 35},     {kChorusRate, 0.3f},    {kChorusDepth, 4},
                                             {kChorusLowCut, 350}, {kChorusHighCut, 5000}, {kEffectWidth, 130}};
constexpr ParameterValue kVibrato[] = {{kChorusVoices, 1},  {kChorusRate, 5.2f},    {kChorusDepth, 1.1f},
                                       {kChorusDelay, 2},   {kChorusSpread, 0},     {kChorusLowCut, 10},
                                       {kEffectWidth, 100}, {kChorusHighCut, 20000}};

constexpr std::array<ProgramSpec, 8> kPrograms = {{
    {"Warm Pair", kWarmPair},
    {"Ensemble", kEnsemble},
    {"Slow Sea", kSlowSea},
    {"Wide Air", kWideAir},
    {"Studio Insert", kStudioInsert},
    {"Electric Piano", kElectricPiano},
    {"Bass Thickener", kBassThickener},
    {"Vibrato", kVibrato},
}};

}  // namespace

std::span<const ParameterSpec> ChorusParameters() { return kParameters; }
std::span<const ProgramSpec> ChorusPrograms() { return kPrograms; }

}  // namespace quibplug
