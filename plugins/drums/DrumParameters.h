// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The drums, their parameters in the host's order, and the kits. The order is part of the saved
// state: new parameters go to the end.

#include <array>
#include <span>

#include "dsp/ParameterSpec.h"

namespace quibplug {

enum Drum : int {
    kKick,
    kSnare,
    kClap,
    kClosedHat,
    kPedalHat,
    kOpenHat,
    kLowTom,
    kMidTom,
    kHighTom,
    kCrash,
    kRide,
    kRim,
    kCowbell,
    kTambourine,
    kShaker,
    kClaves,
    kDrumCount
};

// Of each drum; its index is that of the drum times kDrumParameterCount plus this.
enum DrumParameter : int {
    kDrumLevel,
    kDrumPan,
    kDrumTune,
    kDrumDecay,
    kDrumTone,
    kDrumSnap,
    kDrumColour,
    kDrumSend,  // 0 none, 1..4 the pair that gets the drum besides the main one
    kDrumParameterCount
};

enum KitParameter : int {
    kKitDrive = static_cast<int>(kDrumCount) * static_cast<int>(kDrumParameterCount),
    kKitCrush,
    kKitVelocity,
    kKitVolume,
    kDrumsParameterCount
};

constexpr int kSendCount = 4;

constexpr int IndexOf(int drum, int parameter) noexcept { return drum * kDrumParameterCount + parameter; }

// The drum of a General MIDI key, or -1.
int DrumOfKey(int key) noexcept;

// Null for no drum.
const char* NameOfDrum(int drum) noexcept;

std::span<const ParameterSpec> DrumsParameters();
std::span<const ProgramSpec> DrumKits();

}  // namespace quibplug
