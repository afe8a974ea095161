// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/InstrumentFields.h"

#include <array>

namespace quib {

namespace {

using Instrument = CInstrument;

constexpr float kFull = 127;
constexpr float kKeys = 128;
constexpr float kLastChannelSelector = 17;
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

std::span<const InstrumentField> StripFields() {
    static constexpr std::array<InstrumentField, 35> fields = {{
        Integer(
            "STEPNUMBER", [](Instrument& i) -> CIntegerValue& { return i.stepNumber; }, 1, kMaximumStepCount),
        Real(
            "LEVEL", [](Instrument& i) -> CValue& { return i.strip.level; }, 0, kFull),
        Real(
            "PAN", [](Instrument& i) -> CValue& { return i.strip.pan; }, -1, 1),
        Switch("MUTE", [](Instrument& i) -> CValue& { return i.strip.mute; }),
        Switch("CROSSFADEA", [](Instrument& i) -> CValue& { return i.strip.crossfadeA; }),
        Switch("CROSSFADEB", [](Instrument& i) -> CValue& { return i.strip.crossfadeB; }),
        Switch("SYNCHRO_INST", [](Instrument& i) -> CValue& { return i.strip.synchro; }),
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
        Switch("EFFECT1_ON", [](Instrument& i) -> CValue& { return i.strip.sendOn[0]; }),
        Real(
            "EFFECT1_LEVEL", [](Instrument& i) -> CValue& { return i.strip.sendLevel[0]; }, 0, kFull),
        Switch("EFFECT2_ON", [](Instrument& i) -> CValue& { return i.strip.sendOn[1]; }),
        Real(
            "EFFECT2_LEVEL", [](Instrument& i) -> CValue& { return i.strip.sendLevel[1]; }, 0, kFull),
        Switch("EFFECT3_ON", [](Instrument& i) -> CValue& { return i.strip.sendOn[2]; }),
        Real(
            "EFFECT3_LEVEL", [](Instrument& i) -> CValue& { return i.strip.sendLevel[2]; }, 0, kFull),
        Switch("EFFECT4_ON", [](Instrument& i) -> CValue& { return i.strip.sendOn[3]; }),
        Real(
            "EFFECT4_LEVEL", [](Instrument& i) -> CValue& { return i.strip.sendLevel[3]; }, 0, kFull),
        Switch("EQ_ON", [](Instrument& i) -> CValue& { return i.strip.eqOn; }),
        Real(
            "EQ1_FREQ", [](Instrument& i) -> CValue& { return i.strip.eqFreq[0]; }, 0, 1),
        Real(
            "EQ1_RES", [](Instrument& i) -> CValue& { return i.strip.eqQ[0]; }, 0, 1),
        Real(
            "EQ1_GAIN", [](Instrument& i) -> CValue& { return i.strip.eqGain[0]; }, -1, 1),
        Real(
            "EQ2_FREQ", [](Instrument& i) -> CValue& { return i.strip.eqFreq[1]; }, 0, 1),
        Real(
            "EQ2_RES", [](Instrument& i) -> CValue& { return i.strip.eqQ[1]; }, 0, 1),
        Real(
            "EQ2_GAIN", [](Instrument& i) -> CValue& { return i.strip.eqGain[1]; }, -1, 1),
        Real(
            "EQ3_FREQ", [](Instrument& i) -> CValue& { return i.strip.eqFreq[2]; }, 0, 1),
        Real(
            "EQ3_RES", [](Instrument& i) -> CValue& { return i.strip.eqQ[2]; }, 0, 1),
        Real(
            "EQ3_GAIN", [](Instrument& i) -> CValue& { return i.strip.eqGain[2]; }, -1, 1),
    }};
    return fields;
}

std::span<const InstrumentField> InsertSwitchFields() {
    static constexpr std::array<InstrumentField, kInsertCount> fields = {{
        Switch("INSERT1_ON", [](Instrument& i) -> CValue& { return i.strip.insertOn[0]; }),
        Switch("INSERT2_ON", [](Instrument& i) -> CValue& { return i.strip.insertOn[1]; }),
    }};
    return fields;
}

}  // namespace quib
