// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the arpeggiator will play, found out by running the engine's own on an instrument of its own.
// Editing thread.

#include <span>
#include <vector>

#include "model/CInstrument.h"

namespace quib {

// The notes of `steps` steps from the arpeggiator's beginning, with `keys` held in the order in which they went
// down. The random parts are those of the seed.
std::vector<Note> PreviewArpeggiator(const ArpeggiatorSettings& settings, std::span<const std::uint8_t> keys, int steps,
                                     std::uint32_t seed);

}  // namespace quib
