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
    kKitTouch,      // how much duller a soft stroke is
    kKitRoomLevel,  // 0: no room
    kKitRoomSize,
    kDrumsParameterCount
};

constexpr int kSendCount = 4;

constexpr int IndexOf(int drum, int parameter) noexcept { return drum * kDrumParameterCount + parameter; }

// What a General MIDI key plays: a drum as it is, or tuned and shortened to stand for a relative that the
// kit does not have.
struct KeySound {
    int drum = -1;  // none
    const char* name = nullptr;
    float tune = 0.0f;   // semitones
    float decay = 1.0f;  // of the drum's own
    int stroke = -1;     // strokes of one number end each other
};
KeySound SoundOfKey(int key) noexcept;

std::span<const ParameterSpec> DrumsParameters();
std::span<const ProgramSpec> DrumKits();

}  // namespace quibplug
