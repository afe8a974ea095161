// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The delay's parameters in the host's order, its note values and its programs. The order is part of
// the saved state: new parameters go to the end.

#include <span>

#include "dsp/CEffectBase.h"

namespace quibplug {

enum DelayParameter : int {
    kDelaySync = kFirstOwnParameter,  // 0 milliseconds, 1 notes
    kDelayLink,                       // 1: the right time is the left one
    kDelayLeftNote,
    kDelayRightNote,
    kDelayLeftTime,
    kDelayRightTime,
    kDelayPingPong,
    kDelayFeedback,
    kDelayLowCut,
    kDelayHighCut,
    kDelayDrive,
    kDelayTimeChange,  // as TimeChange
    kDelayParameterCount
};

// From the shortest: triplet, plain and dotted of each value from 1/32 to 1/1.
enum DelayNote : int {
    kNote32Triplet,
    kNote32,
    kNote32Dotted,
    kNote16Triplet,
    kNote16,
    kNote16Dotted,
    kNote8Triplet,
    kNote8,
    kNote8Dotted,
    kNote4Triplet,
    kNote4,
    kNote4Dotted,
    kNote2Triplet,
    kNote2,
    kNote2Dotted,
    kNote1Triplet,
    kNote1,
    kNote1Dotted,
    kNoteCount
};

// Quarter notes in a note value.
double QuartersOf(int note) noexcept;

std::span<const ParameterSpec> DelayParameters();
std::span<const ProgramSpec> DelayPrograms();

}  // namespace quibplug
