// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What MIDI messages say to controls: places of a hand, steps of an encoder, presses. Pure functions.

#include <optional>

#include "model/MidiEvents.h"
#include "model/control/ControlBinding.h"

namespace quib {

constexpr int kFineControllers = 32;  // those that have a second one for their fine part

// 0..1 for 0..`most`, the exact half for the middle number: a knob with a notch there means the middle.
constexpr float ShareOf(int number, int most) noexcept {
    const int middle = (most + 1) / 2;
    const float half = static_cast<float>(number) / static_cast<float>(2 * middle);
    return number <= middle ? half
                            : 0.5F + 0.5F * static_cast<float>(number - middle) / static_cast<float>(most - middle);
}

// Steps of an encoder, up as positive numbers.
constexpr int StepsOf(EControlMode mode, int data) noexcept {
    switch (mode) {
        case EControlMode::kTwos:
            return data < 64 ? data : data - 128;
        case EControlMode::kOffset:
            return data - 64;
        case EControlMode::kSign:
            return data < 64 ? data : 64 - data;
        default:
            return 0;
    }
}

// Status of a message without its channel, and the selector of its channel.
constexpr int KindOf(int status) noexcept { return status & 0xf0; }
constexpr int SelectorOf(int status) noexcept { return (status & 0x0f) + 2; }
constexpr bool Listens(int selector, int status) noexcept { return selector == 1 || selector == SelectorOf(status); }

// Ends what a press began: the key or the pedal comes up.
constexpr bool IsRelease(int status, int data1, int data2) noexcept {
    return KindOf(status) == kNoteOff || (KindOf(status) == kNoteOn && data2 == 0) ||
           (KindOf(status) == kControlChange && data1 == kSustainPedal && data2 < 64);
}

}  // namespace quib
