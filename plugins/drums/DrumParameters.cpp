// SPDX-License-Identifier: GPL-3.0-or-later
#include "drums/DrumParameters.h"

#include <string>
#include <vector>

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
}};

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

const char* NameOfDrum(int drum) noexcept { return drum >= 0 && drum < kDrumCount ? kDrumNames[drum] : nullptr; }

int DrumOfKey(int key) noexcept {
    switch (key) {
        case 35:
        case 36:
            return kKick;
        case 38:
        case 40:
            return kSnare;
        case 39:
            return kClap;
        case 42:
            return kClosedHat;
        case 44:
            return kPedalHat;
        case 46:
            return kOpenHat;
        case 41:
            return kLowTom;
        case 45:
            return kMidTom;
        case 48:
            return kHighTom;
        case 49:
            return kCrash;
        case 51:
            return kRide;
        case 37:
            return kRim;
        case 56:
            return kCowbell;
        case 54:
            return kTambourine;
        case 70:
            return kShaker;
        case 75:
            return kClaves;
        default:
            return -1;
    }
}

std::span<const ParameterSpec> DrumsParameters() {
    static const ParameterTable table;
    return table.specs;
}

}  // namespace quibplug
