// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a hand moves on a MIDI controller, and what it moves in the program by that. Plain values, written to files as
// their numbers; they know no window, no engine and no thread.

#include <cstdint>
#include <string>

namespace quib {

enum class EControlSource : std::int32_t {
    kController = 0,      // number: 0..127
    kFineController = 1,  // number: 0..31, coarse; its fine part comes as controller number + 32
    kKey = 2,             // number: 0..127
    kBend = 3,
    kPressure = 4,
    kProgram = 5,  // number: 0..127
};

struct ControlSource {
    EControlSource kind = EControlSource::kController;
    std::int32_t channelSelector = 1;  // 1 every channel, 2..17 MIDI channels 1..16
    std::int32_t number = 0;           // 0 where the kind has none

    friend bool operator==(const ControlSource&, const ControlSource&) = default;
};

// Whether a message may be meant by both.
constexpr bool Overlap(const ControlSource& a, const ControlSource& b) noexcept {
    return a.kind == b.kind && a.number == b.number &&
           (a.channelSelector == b.channelSelector || a.channelSelector == 1 || b.channelSelector == 1);
}

enum class EControlTarget : std::int32_t {
    // Of an instrument.
    kStrip = 0,   // index: mix parameter
    kPlugin = 1,  // index: parameter; likewise for the other plug-ins
    kInsert1 = 2,
    kInsert2 = 3,
    kInstrument = 4,  // index: see InstrumentControl
    kBallX = 5,       // index: ball
    kBallY = 6,
    kPattern = 7,  // index: pattern, which is selected
    kPreset = 8,   // index: preset, which is recalled
    kSolo = 9,
    // Of all.
    kMaster = 10,  // index: see MasterControl
    kMasterInsert1 = 11,
    kMasterInsert2 = 12,
    kEffect1 = 13,
    kEffect2 = 14,
    kEffect3 = 15,
    kEffect4 = 16,
    kTransport = 17,  // index: ETransportKey
    kPresets = 18,    // index: preset, which every instrument recalls
};
constexpr int kControlTargetCount = 19;

enum class ETransportKey : int { kPlay, kStop, kRecordNotes, kRecordAutomation, kMetronome, kTapTempo, kPanic };
constexpr int kTransportKeyCount = 7;

struct ControlTarget {
    EControlTarget kind = EControlTarget::kStrip;
    std::uint32_t instrument = 0;  // its id, in files its place from 1; 0: none
    std::int32_t index = 0;

    friend bool operator==(const ControlTarget&, const ControlTarget&) = default;
};

constexpr bool IsOfInstrument(EControlTarget kind) noexcept { return kind <= EControlTarget::kSolo; }
// Kept with the project; the others are kept for all projects.
constexpr bool IsOfProject(EControlTarget kind) noexcept {
    return kind != EControlTarget::kMaster && kind != EControlTarget::kTransport && kind != EControlTarget::kPresets;
}
// Something that happens, and no value that is moved.
constexpr bool IsAction(EControlTarget kind) noexcept {
    return (kind >= EControlTarget::kPattern && kind <= EControlTarget::kSolo) || kind >= EControlTarget::kTransport;
}
constexpr bool IsPluginParameter(EControlTarget kind) noexcept {
    return (kind >= EControlTarget::kPlugin && kind <= EControlTarget::kInsert2) ||
           (kind >= EControlTarget::kMasterInsert1 && kind <= EControlTarget::kEffect4);
}

// How what comes in becomes a value. Actions happen when a key goes down or a controller passes its middle upwards.
enum class EControlMode : std::int32_t {
    kPickUp = 0,    // the value follows once the hand has come to where it stands
    kJump = 1,      // at once
    kTwos = 2,      // steps of an encoder: 1.. up, 127.. down
    kOffset = 3,    // 65.. up, 63.. down
    kSign = 4,      // 1.. up, 65.. down
    kToggle = 5,    // each press goes to the other end of the range
    kWhileDown = 6  // the high end while it is down, else the low one
};
constexpr int kControlModeCount = 7;

constexpr bool IsRelative(EControlMode mode) noexcept {
    return mode >= EControlMode::kTwos && mode <= EControlMode::kSign;
}

struct ControlBinding {
    ControlSource source;
    ControlTarget target;
    EControlMode mode = EControlMode::kPickUp;
    float low = 0;   // 0..1 of the target's range, with the hand at its lowest
    float high = 1;  // and at its highest; below `low`: the other way round

    friend bool operator==(const ControlBinding&, const ControlBinding&) = default;
};

}  // namespace quib
