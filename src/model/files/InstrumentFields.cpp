// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/InstrumentFields.h"

#include <array>

namespace quib {

namespace {

using Instrument = CInstrument;

constexpr float kFull = 127;
constexpr float kKeys = 128;
// Powers of two in the sequencer: more than this many bits of a count are never meant.
constexpr float kMostDoublings = 16;

constexpr InstrumentField Integer(std::string_view key, CIntegerValue& (*value)(Instrument&), float low, float high) {
    return {key, value, nullptr, low, high};
}

constexpr InstrumentField Real(std::string_view key, CValue& (*value)(Instrument&), float low, float high) {
    return {key, nullptr, value, low, high};
}

constexpr InstrumentField Switch(std::string_view key, CValue& (*value)(Instrument&)) { return Real(key, value, 0, 1); }

}  // namespace

std::span<const InstrumentField> MidiInputFields() {
    static constexpr std::array<InstrumentField, 8> fields = {{
        Integer(
            "MIDIINCHANNEL", [](Instrument& i) -> CIntegerValue& { return i.midi.channel; }, 0, kLastChannelSelector),
        Integer(
            "MIDIKEYFROM", [](Instrument& i) -> CIntegerValue& { return i.midi.keyFrom; }, 0, kKeys),
        Integer(
            "MIDIKEYTO", [](Instrument& i) -> CIntegerValue& { return i.midi.keyTo; }, 0, kKeys),
        Integer(
            "MIDIKEYTRANSPOSE", [](Instrument& i) -> CIntegerValue& { return i.midi.transpose; }, -kKeys, kKeys),
        Integer(
            "MIDIPITCH", [](Instrument& i) -> CIntegerValue& { return i.midi.pitchBend; }, 0, 1),
        Integer(
            "MIDIMODWHEEL", [](Instrument& i) -> CIntegerValue& { return i.midi.modulationWheel; }, 0, 1),
        Integer(
            "MIDIAFTERTOUCH", [](Instrument& i) -> CIntegerValue& { return i.midi.aftertouch; }, 0, 1),
        Integer(
            "MIDIPROGRAMCHANGE", [](Instrument& i) -> CIntegerValue& { return i.midi.programChange; }, 0, 1),
    }};
    return fields;
}

std::span<const InstrumentField> StepFields() {
    static constexpr std::array<InstrumentField, 1> fields = {{
        Integer(
            "STEPNUMBER", [](Instrument& i) -> CIntegerValue& { return i.stepNumber; }, 1, kMaximumStepCount),
    }};
    return fields;
}

std::span<const InstrumentField> ArpeggiatorFields() {
    static constexpr std::array<InstrumentField, 10> fields = {{
        Switch("ARPEG_ON", [](Instrument& i) -> CValue& { return i.arpeggiator.on; }),
        Real(
            "ARPEG_MODE", [](Instrument& i) -> CValue& { return i.arpeggiator.mode; }, 0, 3),
        Real(
            "ARPEG_HOLE", [](Instrument& i) -> CValue& { return i.arpeggiator.hole; }, 0, kKeys),
        Real(
            "ARPEG_EXT", [](Instrument& i) -> CValue& { return i.arpeggiator.ext; }, 0, kKeys),
        Real(
            "ARPEG_EXTMODE", [](Instrument& i) -> CValue& { return i.arpeggiator.extMode; }, 0, 3),
        Real(
            "ARPEG_VELOCITY", [](Instrument& i) -> CValue& { return i.arpeggiator.velocity; }, 0, kFull),
        Real(
            "ARPEG_INTERVAL", [](Instrument& i) -> CValue& { return i.arpeggiator.interval; }, -kKeys, kKeys),
        Real(
            "ARPEG_GATETIME", [](Instrument& i) -> CValue& { return i.arpeggiator.gateTime; }, 0, kMostDoublings),
        Real(
            "ARPEG_TEMPO", [](Instrument& i) -> CValue& { return i.arpeggiator.tempo; }, 0, kMostDoublings),
        Integer(
            "PATTERNSELECTED", [](Instrument& i) -> CIntegerValue& { return i.patternSelected; }, 0, kPatternCount - 1),
    }};
    return fields;
}

}  // namespace quib
