// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/CMidiFeed.h"

#include "model/MidiEvents.h"

namespace quib {

namespace {

int Type(const MidiMessage& message) noexcept { return message.status & 0xf0; }

bool IsPedal(const MidiMessage& message) noexcept {
    return Type(message) == kControlChange && message.data1 == kSustainPedal;
}

}  // namespace

std::size_t CMidiFeed::KeyOf(const MidiMessage& message) noexcept {
    const std::size_t key = IsPedal(message) ? kChannelKeys - 1 : message.data1;
    return (message.status & 0x0fU) * kChannelKeys + key;
}

void CMidiFeed::Add(const MidiMessage& message) noexcept {
    const bool begins = Type(message) == kNoteOn || IsPedal(message);
    const bool ends = Type(message) == kNoteOff || (begins && message.data2 == 0);
    // With how much force a key goes up is of no use here, be it right or wrong.
    if (!MidiMessage{message.status, message.data1, ends ? std::uint8_t{0} : message.data2}.IsValid()) return;
    Flush(message.time);
    if (ends) {
        NoteOff(KeyOf(message), message.time);
    } else if (begins) {
        NoteOn(message, KeyOf(message));
    } else {
        queue.TryPush(message);
    }
}

void CMidiFeed::Add(const unsigned char* bytes, std::size_t count, std::uint64_t time) noexcept {
    if (count < 2) return;
    MidiMessage message{bytes[0], bytes[1], 0, time};
    const bool hasThreeBytes = Type(message) != kProgramChange && Type(message) != kChannelPressure;
    if (hasThreeBytes && count < 3) return;
    if (hasThreeBytes) message.data2 = bytes[2];
    Add(message);
}

bool CMidiFeed::Flush(std::uint64_t time) noexcept {
    for (std::size_t key = 0; owed.any() && key < kKeys; ++key) {
        if (owed[key] && !PushNoteOff(key, time)) return false;
    }
    return true;
}

void CMidiFeed::ReleaseAll(std::uint64_t time) noexcept {
    for (std::size_t key = 0; down.any() && key < kKeys; ++key) {
        if (down[key]) NoteOff(key, time);
    }
}

// Behind the end of the note before, or not at all.
void CMidiFeed::NoteOn(const MidiMessage& message, std::size_t key) noexcept {
    if (owed[key]) {
        queue.CountDropped();
    } else if (queue.TryPush(message)) {
        down.set(key);
    }
}

void CMidiFeed::NoteOff(std::size_t key, std::uint64_t time) noexcept {
    down.reset(key);
    if (!owed[key]) PushNoteOff(key, time);
}

bool CMidiFeed::PushNoteOff(std::size_t key, std::uint64_t time) noexcept {
    const auto channel = static_cast<std::uint8_t>(key / kChannelKeys);
    const auto number = static_cast<std::uint8_t>(key % kChannelKeys);
    const bool pedal = number == kChannelKeys - 1;
    const auto status = static_cast<std::uint8_t>(channel | (pedal ? kControlChange : kNoteOff));
    const std::uint8_t data1 = pedal ? std::uint8_t{kSustainPedal} : number;
    const bool taken = queue.HasRoom() && queue.TryPush({status, data1, 0, time});
    owed.set(key, !taken);
    return taken;
}

}  // namespace quib
