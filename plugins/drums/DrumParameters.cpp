// SPDX-License-Identifier: GPL-3.0-or-later
#include "drums/DrumParameters.h"

#include <array>
#include <string>
#include <vector>

#include "drums/CDrumRoom.h"

namespace quibplug {

namespace {

constexpr const char* kDrumNames[kDrumCount] = {
    "Kick",     "Snare", "Clap", "Closed Hat", "Pedal Hat", "Open Hat", "Low Tom", "Mid Tom",
    "High Tom", "Crash", "Ride", "Rim",        "Cowbell",   "Tambourn", "Shaker",  "Claves"};

constexpr const char* kSendNames[] = {"None", "Send 1", "Send 2", "Send 3", "Send 4"};

constexpr std::array<ParameterSpec, kDrumParameterCount> kOfEachDrum = {{
    {"Level", "dB", Curve::kGain, 0, 2, 1},
    {"Pan", "%", Curve::kLinear, -100, 100, 0},
    {"Tune", "st", Curve::kLinear, -24, 24, 0},
    {"Decay", "%", Curve::kExponential, 10, 500, 100},
    {"Tone", "%", Curve::kLinear, 0, 100, 50},
    {"Snap", "%", Curve::kLinear, 0, 100, 50},
    {"Colour", "%", Curve::kLinear, 0, 100, 50},
    {"Send", "", Curve::kStepped, 0, kSendCount, 0, kSendNames},
}};

constexpr std::array<ParameterSpec, kDrumsParameterCount - kKitDrive> kOfTheKit = {{
    {"Kit Drive", "%", Curve::kLinear, 0, 100, 0},
    {"Kit Crush", "%", Curve::kLinear, 0, 100, 0},
    {"Kit Velocity", "%", Curve::kLinear, 0, 100, 70},
    {"Kit Volume", "dB", Curve::kGain, 0, 2, 1},
    {"Kit Touch", "%", Curve::kLinear, 0, 100, 0},
    {"Room Level", "dB", Curve::kGain, 0, 1, 0},
    {"Room Size", "m", Curve::kExponential, CDrumRoom::kSmallestMetres, CDrumRoom::kLargestMetres, 7},
}};

struct KeyRow {
    int key;
    Drum drum;
    const char* name = nullptr;  // null: the drum's own
    float tune = 0.0f;
    float decay = 1.0f;
};

constexpr std::array kKeys = std::to_array<KeyRow>({
    {35, kKick},
    {36, kKick},
    {37, kRim},
    {38, kSnare},
    {39, kClap},
    {40, kSnare},
    {41, kLowTom},
    {42, kClosedHat},
    {43, kLowTom, "High Floor Tom", 3},
    {44, kPedalHat},
    {45, kMidTom},
    {46, kOpenHat},
    {47, kMidTom, "Low-Mid Tom", 3},
    {48, kHighTom},
    {49, kCrash},
    {50, kHighTom, "Highest Tom", 3},
    {51, kRide},
    {52, kCrash, "China", -4, 0.7f},
    {53, kRide, "Ride Bell", 5, 1.2f},
    {54, kTambourine},
    {55, kCrash, "Splash", 6, 0.4f},
    {56, kCowbell},
    {57, kCrash, "Crash 2", 2},
    {59, kRide, "Ride 2", -2},
    {60, kHighTom, "High Bongo", 14, 0.35f},
    {61, kHighTom, "Low Bongo", 9, 0.4f},
    {62, kHighTom, "Mute High Conga", 6, 0.25f},
    {63, kHighTom, "Open High Conga", 5, 0.6f},
    {64, kMidTom, "Low Conga", 5, 0.65f},
    {70, kShaker},
    {75, kClaves},
});

struct ParameterTable {
    std::vector<std::string> names;
    std::vector<ParameterSpec> specs;

    ParameterTable() {
        for (const char* drum : kDrumNames) {
            for (const ParameterSpec& spec : kOfEachDrum) names.push_back(std::string(drum) + " " + spec.name);
        }
        for (std::size_t i = 0; i < names.size(); ++i) {
            specs.push_back(kOfEachDrum[i % kDrumParameterCount]);
            specs.back().name = names[i].c_str();
        }
        specs.insert(specs.end(), kOfTheKit.begin(), kOfTheKit.end());
    }
};

}  // namespace

KeySound SoundOfKey(int key) noexcept {
    for (std::size_t i = 0; i < kKeys.size(); ++i) {
        const KeyRow& row = kKeys[i];
        if (row.key != key) continue;
        // A drum's own keys are one stroke, every relative is one of its own.
        const bool own = row.name == nullptr;
        return {row.drum, own ? kDrumNames[row.drum] : row.name, row.tune, row.decay,
                own ? static_cast<int>(row.drum) : kDrumCount + static_cast<int>(i)};
    }
    return {};
}

std::span<const ParameterSpec> DrumsParameters() {
    static const ParameterTable table;
    return table.specs;
}

}  // namespace quibplug
