// SPDX-License-Identifier: GPL-3.0-or-later
#include "compressor/CompressorParameters.h"

#include <array>

namespace quibplug {

namespace {

constexpr std::array<ParameterSpec, kCompressorParameterCount> kParameters = {{
    kMixSpec,
    kLevelSpec,
    kWidthSpec,
    {"Threshold", "dB", Curve::kLinear, -60, 0, -18},
    {"Ratio", ":1", Curve::kExponential, 1, 20, 3},
    {"Knee", "dB", Curve::kLinear, 0, 24, 6},
    {"Attack", "ms", Curve::kExponential, 0.1f, 200, 10},
    {"Release", "ms", Curve::kExponential, 10, 2000, 150},
    {"Make-Up", "dB", Curve::kLinear, 0, 24, 0},
    {"Stereo Link", "%", Curve::kLinear, 0, 100, 100},
    {"Detector Low Cut", "Hz", Curve::kExponential, 10, 500, 10},
    {"Ceiling", "dB", Curve::kLinear, -24, 0, -0.3f},
    {"Limiter Release", "ms", Curve::kExponential, 10, 1000, 80},
}};

constexpr ParameterValue kGentleBus[] = {{kCompressorRatio, 2},     {kCompressorThreshold, -16},
                                         {kCompressorAttack, 30},   {kCompressorRelease, 220},
                                         {kCompressorMakeUp, 2.5f}, {kCompressorLowCut, 90}};
constexpr ParameterValue kDrumPunch[] = {{kCompressorRatio, 4},    {kCompressorThreshold, -20}, {kCompressorAttack, 18},
                                         {kCompressorRelease, 90}, {kCompressorMakeUp, 6},      {kCompressorKnee, 4}};
constexpr ParameterValue kBassLevel[] = {{kCompressorRatio, 5},     {kCompressorThreshold, -22}, {kCompressorAttack, 8},
                                         {kCompressorRelease, 180}, {kCompressorMakeUp, 7},      {kCompressorKnee, 10}};
constexpr ParameterValue kLimiterOnly[] = {
    {kCompressorRatio, 1}, {kCompressorCeiling, -1}, {kCompressorLimiterRelease, 120}};
constexpr ParameterValue kLoudMaster[] = {
    {kCompressorRatio, 1.6f}, {kCompressorThreshold, -20}, {kCompressorKnee, 12},
    {kCompressorAttack, 25},  {kCompressorRelease, 250},   {kCompressorMakeUp, 6},
    {kCompressorLowCut, 100}, {kCompressorCeiling, -1},    {kCompressorLimiterRelease, 150}};
constexpr ParameterValue kParallelCrush[] = {
    {kEffectMix, 45},          {kCompressorRatio, 12},   {kCompressorThreshold, -34},
    {kCompressorAttack, 1.5f}, {kCompressorRelease, 60}, {kCompressorMakeUp, 14}};
constexpr ParameterValue kPump[] = {{kCompressorRatio, 8},     {kCompressorThreshold, -26}, {kCompressorAttack, 3},
                                    {kCompressorRelease, 320}, {kCompressorMakeUp, 9},      {kCompressorKnee, 2}};
constexpr ParameterValue kLeadLeveller[] = {
    {kCompressorRatio, 3},     {kCompressorThreshold, -24}, {kCompressorKnee, 14},   {kCompressorAttack, 5},
    {kCompressorRelease, 120}, {kCompressorMakeUp, 6},      {kCompressorLowCut, 150}};

constexpr std::array<ProgramSpec, 8> kPrograms = {{
    {"Gentle Bus", kGentleBus},
    {"Drum Punch", kDrumPunch},
    {"Bass Level", kBassLevel},
    {"Limiter Only", kLimiterOnly},
    {"Loud Master", kLoudMaster},
    {"Parallel Crush", kParallelCrush},
    {"Pump", kPump},
    {"Lead Leveller", kLeadLeveller},
}};

}  // namespace

std::span<const ParameterSpec> CompressorParameters() { return kParameters; }
std::span<const ProgramSpec> CompressorPrograms() { return kPrograms; }

}  // namespace quibplug
