// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CMidiRouter.h"

#include <algorithm>

#include "engine/ParameterChange.h"

namespace quib {

namespace {

constexpr int kModulationController = 1;
// Position of what comes while nothing plays.
constexpr float kNowhere = -1.0F;

int Type(const MidiMessage& message) noexcept { return message.status & 0xf0; }
int Selector(const MidiMessage& message) noexcept { return (message.status & 0x0f) + 2; }

bool Matches(int selector, const MidiMessage& message) noexcept {
    return selector == kChannelOmni || selector == Selector(message);
}

LiveEvent Event(int status, int data1, int data2, std::uint64_t time) noexcept {
    return {static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1), static_cast<std::uint8_t>(data2),
            time};
}

void MoveBalls(BlockInstrument& entry, const MidiMessage& message, double sampleRate) noexcept {
    const BallSoundList& sounds = entry.instrument->ballSounds.ForRender();
    const std::size_t count = std::min(sounds.size(), InstrumentPlayState::kMaximumBalls);
    for (std::size_t index = 0; index < count; ++index) {
        const BallSound& sound = sounds[index];
        if (!Matches(sound.channelSelector, message)) continue;
        for (const std::size_t axis : {std::size_t{0}, std::size_t{1}}) {
            if ((axis == 0 ? sound.controllerX : sound.controllerY) != message.data1) continue;
            entry.instrument->play.balls[index][axis] = message.data2;
            MoveBall(entry, axis == 0 ? sound.horizontal : sound.vertical, message.data2, sampleRate);
        }
    }
}

}  // namespace

void CMidiRouter::Dispatch(const MidiMessage& message, ELiveSource source, BlockContext& block,
                           const CTransport& transport) noexcept {
    if (!message.IsValid()) return;
    ++count;
    SelectPreset(message);

    const auto listens = [&](const BlockInstrument& entry) {
        return Matches(entry.instrument->midi.channel.Get(), message);
    };
    const bool prioritised = std::any_of(block.instruments.begin(), block.instruments.end(), [&](const auto& entry) {
        return listens(entry) && entry.instrument->midi.priority.IsOn();
    });
    const double stepNanoseconds = static_cast<double>(transport.samplesPerStep) * 1e9 / block.sampleRate;
    const auto sinceStep = static_cast<std::int64_t>(message.time - transport.stepTime);
    const auto position = static_cast<float>(static_cast<double>(sinceStep) / stepNanoseconds);
    for (BlockInstrument& entry : block.instruments) {
        if (Type(message) == kControlChange) MoveBalls(entry, message, block.sampleRate);
        const bool hears = listens(entry) && (!prioritised || entry.instrument->midi.priority.IsOn());
        if (hears) ++entry.instrument->play.midiCount;
        if (DispatchKey(*entry.instrument, message, source, hears) || !hears) continue;
        const auto step = static_cast<float>(std::max(0, entry.instrument->play.currentStep));
        DispatchTo(entry, message, transport.playing ? std::max(0.0F, step + position) : kNowhere);
    }
}

// True for a key or the pedal. What goes up does so wherever it went down, whoever hears it now.
bool CMidiRouter::DispatchKey(CInstrument& instrument, const MidiMessage& message, ELiveSource source,
                              bool hears) noexcept {
    const auto channel = static_cast<std::uint8_t>(message.status & 0x0f);
    const LiveOrigin origin{source, channel, message.data1};
    if (Type(message) == kControlChange && message.data1 == kSustainPedal) {
        keys.MovePedal(instrument, {source, channel, kPedalKey}, message.data2, hears, message.time);
    } else if (Type(message) == kNoteOff || (Type(message) == kNoteOn && message.data2 == 0)) {
        EndNote(instrument, origin, hears, message.time);
    } else if (Type(message) == kNoteOn) {
        if (hears) BeginNote(instrument, origin, message.data2, message.time);
    } else {
        return false;
    }
    return true;
}

void CMidiRouter::SelectPreset(const MidiMessage& message) noexcept {
    if (!Matches(presets.channel.Get(), message)) return;
    EngineNotice notice{EngineNotice::EKind::kPresetSelected};
    if (presets.mode.Get() == 0 && Type(message) == kNoteOn && message.data2 > 0) {
        notice.value = message.data1 - presets.baseNote.Get();
    } else if (presets.mode.Get() == 1 && Type(message) == kProgramChange) {
        notice.value = message.data1;
    } else {
        return;
    }
    if (notice.value >= 0) notices.TryPush(notice);
}

void CMidiRouter::DispatchTo(BlockInstrument& entry, const MidiMessage& message, float position) noexcept {
    CInstrument& instrument = *entry.instrument;
    const MidiInputSettings& midi = instrument.midi;
    auto& live = instrument.play.liveEvents;
    switch (Type(message)) {
        case kPitchBend:
            if (!midi.pitchBend.IsOn()) return;
            live.Add(Event(kPitchBend, 0, message.data2, message.time));  // coarse steps only
            return OfferToLane(instrument, kPitchBendLane, message.data2, position);
        case kChannelPressure:
            if (!midi.aftertouch.IsOn()) return;
            live.Add(Event(kChannelPressure, message.data1, 0, message.time));
            return OfferToLane(instrument, kAftertouchLane, message.data1, position);
        case kProgramChange:
            if (!midi.programChange.IsOn()) return;
            notices.TryPush({EngineNotice::EKind::kProgramSelected, instrument.Id(), message.data1});
            return OfferToLane(instrument, kProgramChangeLane, message.data1, position);
        case kControlChange:
            if (!midi.modulationWheel.IsOn() || message.data1 != kModulationController) return;
            live.Add(Event(kControlChange, kModulationController, message.data2, message.time));
            return OfferToLane(instrument, kModulationWheelLane, message.data2, position);
        default:
            return;
    }
}

void CMidiRouter::PlayKey(CInstrument& instrument, int key, int velocity, std::uint64_t time) noexcept {
    if (key < 0 || key > 127) return;
    const LiveOrigin origin{ELiveSource::kWindows, 0, static_cast<std::int16_t>(key)};
    if (velocity > 0) {
        BeginNote(instrument, origin, std::min(velocity, 127), time);
    } else {
        EndNote(instrument, origin, true, time);
    }
}

void CMidiRouter::Audition(CInstrument& instrument, int key, int velocity, std::uint64_t time) noexcept {
    if (key < 0 || key > 127) return;
    const auto same = static_cast<std::int16_t>(key);
    const LiveOrigin origin{ELiveSource::kAudition, 0, same};
    if (velocity > 0) {
        keys.Begin(instrument, {origin, same}, std::min(velocity, 127), time);
    } else {
        keys.End(instrument, origin, time);
    }
}

void CMidiRouter::BeginNote(CInstrument& instrument, const LiveOrigin& origin, int velocity,
                            std::uint64_t time) noexcept {
    MidiInputSettings& midi = instrument.midi;
    const int key = origin.key;
    if (midi.limitLearning.Get() >= 0) {
        (midi.limitLearning.Get() == 0 ? midi.keyFrom : midi.keyTo).Set(key);
        midi.limitLearning.Set(-1);
        notices.TryPush({EngineNotice::EKind::kLimitLearned, instrument.Id()});
        return;
    }
    const int transposed = key + midi.transpose.Get();
    const bool plays = key >= midi.keyFrom.Get() && key < midi.keyTo.Get() && transposed >= 0 && transposed <= 127 &&
                       !instrument.arpeggiator.on.IsOn();
    LiveKey begun{origin, static_cast<std::int16_t>(plays ? transposed : -1)};
    begun.listed = instrument.keyboardOn.IsOn();
    if (plays || begun.listed) keys.Begin(instrument, begun, velocity, time);
}

void CMidiRouter::EndNote(CInstrument& instrument, const LiveOrigin& origin, bool hears, std::uint64_t time) noexcept {
    keys.End(instrument, origin, time);
    // Held keys may also come from a file.
    if (hears && instrument.keyboardOn.IsOn() && !instrument.play.latched)
        std::erase(instrument.play.heldKeys.Items(), origin.key);
}

void CMidiRouter::OfferToLane(CInstrument& instrument, int lane, int value, float position) noexcept {
    if (!recording.IsOn() || position < 0.0F) return;
    notices.TryPush({EngineNotice::EKind::kLanePoint, instrument.Id(), value, lane, instrument.play.currentPattern,
                     position, static_cast<float>(value)});
}

}  // namespace quib
