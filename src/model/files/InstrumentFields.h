// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The single settings of an instrument that files keep one a line, with their keys, kinds and ranges,
// in the order in which they are written; those of its strip apart, which kStripSettings lists. Shared by
// the instrument's reader and writer.

#include <span>
#include <string_view>

#include "model/CInstrument.h"

namespace quib {

// Exactly one of the two functions is set; it tells whether files have an integer or a real.
struct InstrumentField {
    std::string_view key;
    CIntegerValue& (*integer)(CInstrument& instrument);
    CValue& (*real)(CInstrument& instrument);
    float low;
    float high;
};

// MIDI input, before the on-screen keyboard's records.
std::span<const InstrumentField> MidiInputFields();
// After the keyboard's records, before the mixer part of the strip.
std::span<const InstrumentField> StepFields();
// With the selected pattern: between the mixer part of the strip and its effects.
std::span<const InstrumentField> ArpeggiatorFields();

}  // namespace quib
