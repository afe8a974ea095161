// SPDX-License-Identifier: GPL-3.0-or-later
#include "reverb/ReverbParameters.h"

#include <array>

namespace quibplug {

namespace {

constexpr std::array<ParameterSpec, kReverbParameterCount> kParameters = {{
    kMixSpec,
    kLevelSpec,
    kWidthSpec,
    {"Pre-Delay", "ms", Curve::kLinear, 0, kReverbLongestPreDelayMs, 15},
    {"Size", "m", Curve::kExponential, 4, kReverbLargestSize, 20},
    {"Decay", "s", Curve::kExponential, 0.2f, 20, 2.2f},
    {"High Decay", "%", Curve::kExponential, 10, 100, 40},
    {"Damping", "Hz", Curve::kExponential, 1000, 16000, 4500},
    {"Low Cut", "Hz", Curve::kExponential, 10, 1000, 80},
    {"High Cut", "Hz", Curve::kExponential, 1000, 20000, 12000},
    {"Early", "dB", Curve::kGain, 0, 2, 0.7f},
    {"Late", "dB", Curve::kGain, 0, 2, 1},
    {"Diffusion", "%", Curve::kLinear, 0, 100, 80},
    {"Modulation", "%", Curve::kLinear, 0, 100, 50},
    {"Mod Rate", "Hz", Curve::kExponential, 0.05f, 3, 0.9f},
}};

constexpr ParameterValue kConcertHall[] = {{kReverbPreDelay, 22}, {kReverbSize, 28}, {kReverbDecay, 2.4f}};
constexpr ParameterValue kSmallRoom[] = {
    {kReverbPreDelay, 2},   {kReverbSize, 7},        {kReverbDecay, 0.55f},
    {kReverbHighDecay, 55}, {kReverbLowCut, 120},    {kReverbEarly, 1.2f},
    {kReverbDiffusion, 90}, {kReverbModulation, 60}, {kReverbModulationRate, 1.5f}};
constexpr ParameterValue kBrightPlate[] = {
    {kReverbPreDelay, 0},    {kReverbSize, 14},       {kReverbDecay, 1.8f},         {kReverbHighDecay, 75},
    {kReverbDamping, 7000},  {kReverbLowCut, 180},    {kReverbHighCut, 18000},      {kReverbEarly, 0},
    {kReverbDiffusion, 100}, {kReverbModulation, 90}, {kReverbModulationRate, 1.8f}};
constexpr ParameterValue kDrumChamber[] = {
    {kReverbPreDelay, 5},   {kReverbSize, 12},       {kReverbDecay, 1.1f},
    {kReverbHighDecay, 50}, {kReverbLowCut, 200},    {kReverbEarly, 1},
    {kReverbDiffusion, 95}, {kReverbModulation, 70}, {kReverbModulationRate, 1.5f}};
constexpr ParameterValue kVocalHall[] = {{kReverbPreDelay, 60},  {kReverbSize, 22},    {kReverbDecay, 1.9f},
                                         {kReverbHighDecay, 45}, {kReverbLowCut, 250}, {kReverbHighCut, 9000},
                                         {kReverbEarly, 0.5f}};
constexpr ParameterValue kCathedral[] = {{kReverbPreDelay, 40},  {kReverbSize, 46},      {kReverbDecay, 6.5f},
                                         {kReverbHighDecay, 25}, {kReverbDamping, 3500}, {kReverbLowCut, 60},
                                         {kReverbHighCut, 8000}, {kReverbEarly, 0.4f},   {kReverbDiffusion, 90}};
constexpr ParameterValue kDarkClub[] = {{kReverbPreDelay, 10},  {kReverbSize, 16},      {kReverbDecay, 1.4f},
                                        {kReverbHighDecay, 18}, {kReverbDamping, 2200}, {kReverbLowCut, 150},
                                        {kReverbHighCut, 4500}};
constexpr ParameterValue kDeepSpace[] = {{kReverbPreDelay, 80},   {kReverbSize, 50},
                                         {kReverbDecay, 16},      {kReverbHighDecay, 45},
                                         {kReverbDamping, 5000},  {kReverbLowCut, 120},
                                         {kReverbEarly, 0},       {kReverbDiffusion, 100},
                                         {kReverbModulation, 90}, {kReverbModulationRate, 0.7f},
                                         {kEffectWidth, 120}};

constexpr std::array<ProgramSpec, 8> kPrograms = {{
    {"Concert Hall", kConcertHall},
    {"Small Room", kSmallRoom},
    {"Bright Plate", kBrightPlate},
    {"Drum Chamber", kDrumChamber},
    {"Vocal Hall", kVocalHall},
    {"Cathedral", kCathedral},
    {"Dark Club", kDarkClub},
    {"Deep Space", kDeepSpace},
}};

}  // namespace

std::span<const ParameterSpec> ReverbParameters() { return kParameters; }
std::span<const ProgramSpec> ReverbPrograms() { return kPrograms; }

}  // namespace quibplug
