// SPDX-License-Identifier: GPL-3.0-or-later
#include "delay/DelayParameters.h"

#include <array>

namespace quibplug {

namespace {

constexpr const char* kSyncNames[] = {"ms", "Note"};
constexpr const char* kSwitchNames[] = {"Off", "On"};
constexpr const char* kChangeNames[] = {"Fade", "Glide"};
constexpr const char* kNoteNames[kNoteCount] = {"1/32 T", "1/32", "1/32 D", "1/16 T", "1/16", "1/16 D",
                                                "1/8 T",  "1/8",  "1/8 D",  "1/4 T",  "1/4",  "1/4 D",
                                                "1/2 T",  "1/2",  "1/2 D",  "1/1 T",  "1/1",  "1/1 D"};

constexpr std::array<ParameterSpec, kDelayParameterCount> kParameters = {{
    kMixSpec,
    kLevelSpec,
    kWidthSpec,
    {"Sync", "", Curve::kStepped, 0, 1, 1, kSyncNames},
    {"Link", "", Curve::kStepped, 0, 1, 1, kSwitchNames},
    {"Left Note", "", Curve::kStepped, 0, kNoteCount - 1, kNote8Dotted, kNoteNames},
    {"Right Note", "", Curve::kStepped, 0, kNoteCount - 1, kNote4, kNoteNames},
    {"Left Time", "ms", Curve::kExponential, 1, 2000, 375},
    {"Right Time", "ms", Curve::kExponential, 1, 2000, 500},
    {"Ping Pong", "%", Curve::kLinear, 0, 100, 0},
    {"Feedback", "%", Curve::kLinear, 0, 95, 40},
    {"Low Cut", "Hz", Curve::kExponential, 10, 2000, 120},
    {"High Cut", "Hz", Curve::kExponential, 200, 20000, 6000},
    {"Drive", "%", Curve::kLinear, 0, 100, 0},
    {"Time Change", "", Curve::kStepped, 0, 1, 0, kChangeNames},
}};

constexpr ParameterValue kDottedEighth[] = {{kDelayLeftNote, kNote8Dotted}};
constexpr ParameterValue kPingPong[] = {
    {kDelayLeftNote, kNote8}, {kDelayPingPong, 100}, {kDelayFeedback, 55}, {kDelayHighCut, 7000}};
constexpr ParameterValue kStraightQuarter[] = {
    {kDelayLeftNote, kNote4}, {kDelayFeedback, 35}, {kDelayLowCut, 200}, {kDelayHighCut, 5000}};
constexpr ParameterValue kTripletBounce[] = {{kDelayLink, 0},
                                             {kDelayLeftNote, kNote8Triplet},
                                             {kDelayRightNote, kNote4Triplet},
                                             {kDelayPingPong, 60},
                                             {kDelayFeedback, 50}};
constexpr ParameterValue kWornTape[] = {{kDelayLeftNote, kNote8Dotted}, {kDelayFeedback, 62}, {kDelayLowCut, 250},
                                        {kDelayHighCut, 2600},          {kDelayDrive, 60},    {kDelayTimeChange, 1}};
constexpr ParameterValue kDubChamber[] = {{kDelayLink, 0},           {kDelayLeftNote, kNote8Dotted},
                                          {kDelayRightNote, kNote4}, {kDelayPingPong, 100},
                                          {kDelayFeedback, 80},      {kDelayLowCut, 350},
                                          {kDelayHighCut, 1800},     {kDelayDrive, 45}};
constexpr ParameterValue kSlap[] = {{kDelaySync, 0},        {kDelayLink, 0},      {kDelayLeftTime, 92},
                                    {kDelayRightTime, 117}, {kDelayFeedback, 12}, {kDelayLowCut, 150},
                                    {kEffectWidth, 150}};
constexpr ParameterValue kDoubler[] = {{kEffectMix, 50},     {kDelaySync, 0},       {kDelayLink, 0},
                                       {kDelayLeftTime, 17}, {kDelayRightTime, 26}, {kDelayFeedback, 0},
                                       {kEffectWidth, 150}};

constexpr std::array<ProgramSpec, 8> kPrograms = {{
    {"Dotted Eighth", kDottedEighth},
    {"Ping Pong Eighths", kPingPong},
    {"Quarter Notes", kStraightQuarter},
    {"Triplet Bounce", kTripletBounce},
    {"Worn Tape", kWornTape},
    {"Dub Chamber", kDubChamber},
    {"Slap", kSlap},
    {"Doubler", kDoubler},
}};

}  // namespace

double QuartersOf(int note) noexcept {
    constexpr double kShapes[] = {2.0 / 3.0, 1.0, 1.5};
    return 0.125 * static_cast<double>(1 << (note / 3)) * kShapes[note % 3];
}

std::span<const ParameterSpec> DelayParameters() { return kParameters; }
std::span<const ProgramSpec> DelayPrograms() { return kPrograms; }

}  // namespace quibplug
