// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The row of numbers that a kit is. Constant tables; any thread.

#include <span>

#include "drums/DrumParameters.h"

namespace quibplug {

// A drum of a kit: level in decibels, pan and the rest in percent, tune in semitones, and decay in
// percent of the drum's own.
struct DrumRow {
    float level, pan, tune, decay, tone, snap, colour;
};

// Of the whole kit: percent, decibels, and the room's length in metres, 0 for none.
struct KitRow {
    float drive, crush, velocity, volume;
    float touch = 0.0f;
    float roomLevel = 0.0f;
    float roomSize = 0.0f;
};

struct Kit {
    const char* name;
    DrumRow drums[kDrumCount];  // kick, snare, clap, hats (closed, pedal, open), toms, crash, ride ...
    KitRow whole;
};

// Kits that stand in a room and answer to the touch. Saved states tell kits by number: they follow the
// others, and new ones go to their end.
std::span<const Kit> RoomKits();

}  // namespace quibplug
