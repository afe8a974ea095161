// SPDX-License-Identifier: GPL-3.0-or-later
#include "flanger/FlangerParameters.h"

#include <array>

namespace quibplug {

namespace {

constexpr const char* kSyncNames[] = {"Hz", "Note"};
constexpr const char* kShapeNames[] = {"Sine", "Triangle"};
constexpr const char* kNoteNames[] = {"1/8", "1/4", "1/2", "1 bar", "2 bars", "4 bars", "8 bars", "16 bars"};
constexpr int kNotes = 8;

constexpr std::array<ParameterSpec, kFlangerParameterCount> kParameters = {{
    kMixSpec,
    kLevelSpec,
    kWidthSpec,
    {"Sync", "", Curve::kStepped, 0, 1, 0, kSyncNames},
    {"Rate", "Hz", Curve::kExponential, 0.02f, 10, 0.2f},
    {"Note", "", Curve::kStepped, 0, kNotes - 1, 5, kNoteNames},
    {"Delay", "ms", Curve::kExponential, 0.1f, 10, 0.4f},
    {"Depth", "ms", Curve::kLinear, 0, 10, 3},
    {"Feedback", "%", Curve::kLinear, -95, 95, 50},
    {"Stereo", "deg", Curve::kLinear, 0, 180, 60},
    {"Shape", "", Curve::kStepped, 0, 1, 0, kShapeNames},
    {"Low Cut", "Hz", Curve::kExponential, 10, 2000, 60},
}};

constexpr ParameterValue kSlowJet[] = {{kFlangerRate, 0.08f}, {kFlangerDepth, 4.5f}, {kFlangerFeedback, 65}};
constexpr ParameterValue kFourBars[] = {
    {kFlangerSync, 1}, {kFlangerNote, 5}, {kFlangerFeedback, 70}, {kFlangerDepth, 5}, {kFlangerShape, 1}};
constexpr ParameterValue kHollow[] = {
    {kFlangerRate, 0.15f}, {kFlangerFeedback, -72}, {kFlangerDepth, 3.2f}, {kFlangerStereo, 90}};
constexpr ParameterValue kMetal[] = {{kFlangerRate, 0.05f}, {kFlangerFeedback, 90}, {kFlangerDelay, 0.8f},
                                     {kFlangerDepth, 1.8f}, {kFlangerStereo, 30},   {kFlangerLowCut, 200},
                                     {kEffectLevel, 0.5f}};
constexpr ParameterValue kGuitarInsert[] = {
    {kEffectMix, 50}, {kFlangerRate, 0.25f}, {kFlangerFeedback, 40}, {kFlangerDepth, 2.5f}};
constexpr ParameterValue kHatShimmer[] = {{kEffectMix, 45},       {kFlangerSync, 1},      {kFlangerNote, 4},
                                          {kFlangerFeedback, 55}, {kFlangerDelay, 0.15f}, {kFlangerDepth, 1.2f},
                                          {kFlangerLowCut, 600},  {kFlangerStereo, 140}};
constexpr ParameterValue kBassSweep[] = {{kEffectMix, 40},        {kFlangerSync, 1},    {kFlangerNote, 6},
                                         {kFlangerFeedback, -50}, {kFlangerDepth, 8},   {kFlangerDelay, 1.2f},
                                         {kFlangerStereo, 20},    {kFlangerLowCut, 180}};
constexpr ParameterValue kWarble[] = {{kEffectMix, 50},      {kFlangerRate, 4.5f},  {kFlangerFeedback, 20},
                                      {kFlangerDepth, 0.9f}, {kFlangerDelay, 1.5f}, {kFlangerStereo, 180}};

constexpr std::array<ProgramSpec, 8> kPrograms = {{
    {"Slow Jet", kSlowJet},
    {"Four Bars", kFourBars},
    {"Hollow", kHollow},
    {"Metal", kMetal},
    {"Guitar Insert", kGuitarInsert},
    {"Hat Shimmer", kHatShimmer},
    {"Bass Sweep", kBassSweep},
    {"Warble", kWarble},
}};

}  // namespace

float SweepQuarters(int note) noexcept { return 0.5f * static_cast<float>(1 << note); }

std::span<const ParameterSpec> FlangerParameters() { return kParameters; }
std::span<const ProgramSpec> FlangerPrograms() { return kPrograms; }

}  // namespace quibplug
