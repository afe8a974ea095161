// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One step of an instrument's arpeggiator: plays the next of the held keys. Render thread only.

#include "engine/CRandom.h"
#include "model/CInstrument.h"

namespace quib {

// The step boundary lies `offset` samples into the block; a step lasts `stepSamples`.
void RunArpeggiator(CInstrument& instrument, int offset, int stepSamples, CRandom& random) noexcept;

}  // namespace quib
