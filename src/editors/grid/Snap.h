// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// How musical time is divided, and the raster that hands are held to. Plain values, any thread.

#include <string>
#include <vector>

namespace quib {

struct Meter {
    int stepsPerBeat = 4;
    int beatsPerBar = 4;
    int beatUnit = 4;   // 4: a beat is a quarter note
    int timebase = 96;  // ticks of a quarter note; 0: there are none

    double StepsPerBeat() const noexcept { return stepsPerBeat < 1 ? 1 : stepsPerBeat; }
    double StepsPerWhole() const noexcept { return StepsPerBeat() * (beatUnit < 1 ? 1 : beatUnit); }
    double StepsPerBar() const noexcept { return StepsPerBeat() * (beatsPerBar < 1 ? 1 : beatsPerBar); }
    // Length of a tick in steps; 0 when there are none.
    double StepsPerTick() const noexcept { return timebase < 1 ? 0 : StepsPerWhole() / 4 / timebase; }

    friend bool operator==(const Meter&, const Meter&) = default;
};

struct Snap {
    enum class EKind { kOff, kStep, kTimebase, kFraction };
    EKind kind = EKind::kStep;
    int denominator = 16;  // of a fraction: 1..64
    bool triplet = false;

    friend bool operator==(const Snap&, const Snap&) = default;
};

// Length of the raster in steps; 0 without one.
double SnapLength(const Snap& snap, const Meter& meter) noexcept;
// "1/16", "1/8T", "Step", "Tick", "Off".
std::string SnapName(const Snap& snap);
// Every choice, in the order of a menu.
std::vector<Snap> SnapChoices();

}  // namespace quib
