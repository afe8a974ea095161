// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/CMidiFeed.h"

#include "model/MidiEvents.h"

namespace quib {

namespace {

int Type(const MidiMessage& message) noexcept { return message.status & 0xf0; }

std::size_t KeyOf(const MidiMessage& message) noexcept {
    return static_cast<std::size_t>(message.status & 0x0f) * 128 + (message.data1 & 0x7fU);
}

}  // namespace

void CMidiFeed::Add(const MidiMessage& message) noexcept {
    if (message.status < 0x80 || message.status > 0xef) return;
    Flush(message.time);
    if (Type(message) == kNoteOff || (Type(message) == kNoteOn && message.data2 == 0)) {
        NoteOff(KeyOf(message), message.time);
    } else if (Type(message) == kNoteOn) {
        NoteOn(message, KeyOf(message));
    } else {
        queue.TryPush(message);
    }
}

void CMidiFeed::Add(const unsigned char* bytes, std::size_t count, std::uint32_t time) noexcept {
    if (count < 2) return;
    MidiMessage message{bytes[0], bytes[1], 0, time};
    const bool hasThreeBytes = Type(message) != kProgramChange && Type(message) != kChannelPressure;
    if (hasThreeBytes && count < 3) return;
    if (hasThreeBytes) message.data2 = bytes[2];
    Add(message);
}

bool CMidiFeed::Flush(std::uint32_t time) noexcept {
    for (std::size_t key = 0; owed.any() && key < kKeys; ++key) {
        if (owed[key] && !PushNoteOff(key, time)) return false;
    }
    return true;
}

void CMidiFeed::ReleaseAll(std::uint32_t time) noexcept {
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

void CMidiFeed::NoteOff(std::size_t key, std::uint32_t time) noexcept {
    down.reset(key);
    if (!owed[key]) PushNoteOff(key, time);
}

bool CMidiFeed::PushNoteOff(std::size_t key, std::uint32_t time) noexcept {
    const auto status = static_cast<std::uint8_t>(kNoteOff | static_cast<int>(key / 128));
    const bool taken = queue.HasRoom() && queue.TryPush({status, static_cast<std::uint8_t>(key % 128), 0, time});
    owed.set(key, !taken);
    return taken;
}

}  // namespace quib
