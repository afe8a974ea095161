// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CLiveKeys.h"

#include <algorithm>

namespace quib {

namespace {

constexpr std::uint64_t kAtOnce = 0;

bool HasRoom(const InstrumentPlayState& play) noexcept {
    const auto& keys = play.liveKeys.Items();
    // A key that is struck again ends first, and everything that is down has to come up.
    return keys.size() < keys.capacity() &&
           play.liveEvents.Items().size() + 2 * keys.size() + 3 < play.liveEvents.Items().capacity();
}

// Never before an earlier message to the same key or controller: an end that is due at once follows its beginning.
void Push(InstrumentPlayState& play, int status, int data1, int data2, std::uint64_t time) noexcept {
    for (const LiveEvent& event : play.liveEvents.Items()) {
        if (event.data1 == data1 && (event.status == kControlChange) == (status == kControlChange))
            time = std::max(time, event.time);
    }
    play.liveEvents.Add(
        {static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1), static_cast<std::uint8_t>(data2), time});
}

void Unlist(InstrumentPlayState& play, const LiveKey& key) noexcept {
    if (key.listed) std::erase(play.heldKeys.Items(), key.origin.key);
}

bool Latches(const CInstrument& instrument) noexcept {
    return instrument.arpeggiator.on.IsOn() && instrument.arpeggiator.latch.IsOn();
}

bool AnyIsDown(const InstrumentPlayState& play) noexcept {
    return std::ranges::any_of(play.liveKeys.Items(), [](const LiveKey& key) { return key.listed; });
}

bool PedalIsDown(const InstrumentPlayState& play) noexcept {
    return std::ranges::any_of(play.liveKeys.Items(), [](const LiveKey& key) { return key.pedal >= kPedalDown; });
}

}  // namespace

void CLiveKeys::Admit(CInstrument& instrument, const CPlugin& plugin, std::uint64_t blockNumber) noexcept {
    InstrumentPlayState& play = instrument.play;
    const bool wasAway = play.lastBlock + 1 != blockNumber;
    const bool isOther = play.heardBy != &plugin;
    play.lastBlock = blockNumber;
    play.heardBy = &plugin;
    if (!wasAway && !isOther) return;
    for (LiveKey& key : play.liveKeys.Items()) {
        Tell(instrument, key, 0, kAtOnce);
        // Whoever was away has missed the key going up.
        if (wasAway) Unlist(play, key);
        key.sent = -1;
    }
    std::erase_if(play.liveKeys.Items(), [wasAway](const LiveKey& key) { return wasAway || !key.listed; });
    play.blockEvents.Items().clear();  // what was kept for the plug-in as it was then
    plugin.KeysDown().ForEachEnd([&play](const BlockEvent& event) { play.blockEvents.Add(event); });
}

void CLiveKeys::Begin(CInstrument& instrument, LiveKey key, int velocity, std::uint64_t time) noexcept {
    InstrumentPlayState& play = instrument.play;
    std::erase_if(play.liveKeys.Items(), [&](const LiveKey& earlier) {
        const bool again = earlier.origin == key.origin;
        if (!again && !(earlier.rings && earlier.sent == key.sent)) return false;
        key.listed = key.listed || (again && earlier.listed);
        Release(instrument, earlier, time);
        return true;
    });
    if (!HasRoom(play)) return Unlist(play, key);
    if (key.listed && play.latched && !AnyIsDown(play)) play.heldKeys.Items().clear();
    play.liveKeys.Add(key);
    if (key.listed) {
        if (play.latched) std::erase(play.heldKeys.Items(), key.origin.key);
        play.heldKeys.Add(key.origin.key);
    }
    if (key.sent < 0) return;
    Push(play, kNoteOn, key.sent, velocity, time);
    Tell(instrument, key, velocity, time);
}

void CLiveKeys::End(CInstrument& instrument, const LiveOrigin& origin, std::uint64_t time) noexcept {
    auto& keys = instrument.play.liveKeys.Items();
    const auto key = std::ranges::find_if(
        keys, [&](const LiveKey& candidate) { return candidate.origin == origin && !candidate.rings; });
    if (key == keys.end()) return;
    if (Latches(instrument)) {
        instrument.play.latched = true;
    } else {
        Unlist(instrument.play, *key);
    }
    key->listed = false;
    if (key->sent >= 0 && capture.IsRecording() && PedalIsDown(instrument.play)) {
        Push(instrument.play, kNoteOn, key->sent, 0, time);
        key->rings = true;
        return;
    }
    Release(instrument, *key, time);
    keys.erase(key);
}

void CLiveKeys::EndLatch(CInstrument& instrument) noexcept {
    InstrumentPlayState& play = instrument.play;
    if (!play.latched || Latches(instrument)) return;
    play.latched = false;
    std::erase_if(play.heldKeys.Items(), [&play](std::int32_t held) {
        return std::ranges::none_of(play.liveKeys.Items(),
                                    [held](const LiveKey& key) { return key.listed && key.origin.key == held; });
    });
}

void CLiveKeys::MovePedal(CInstrument& instrument, const LiveOrigin& origin, int value, bool hears,
                          std::uint64_t time) noexcept {
    InstrumentPlayState& play = instrument.play;
    auto& keys = play.liveKeys.Items();
    auto pedal = std::ranges::find_if(keys, [&](const LiveKey& key) { return key.pedal > 0 && key.origin == origin; });
    if (pedal == keys.end()) {
        if (!hears || value == 0 || !HasRoom(play)) return;
        pedal = keys.insert(keys.end(), {origin});
    }
    pedal->pedal = static_cast<std::uint8_t>(value);
    if (value == 0) keys.erase(pedal);
    // Another foot may still be down.
    const bool down = PedalIsDown(play);
    if (value >= kPedalDown || !down) Push(play, kControlChange, kSustainPedal, value, time);
    if (!down) EndRinging(instrument, time);
}

void CLiveKeys::EndSounding(CInstrument& instrument) noexcept {
    auto& keys = instrument.play.liveKeys.Items();
    const bool arpeggiated = instrument.arpeggiator.on.IsOn();
    for (LiveKey& key : keys) {
        Release(instrument, key, kAtOnce);
        key.sent = -1;
        if (arpeggiated) continue;
        Unlist(instrument.play, key);
        key.listed = false;
    }
    std::erase_if(keys, [](const LiveKey& key) { return !key.listed; });
}

void CLiveKeys::Panic(CInstrument& instrument) noexcept {
    constexpr int kKeys = 128;
    InstrumentPlayState& play = instrument.play;
    EndSounding(instrument);
    play.liveKeys.Items().clear();
    play.heldKeys.Items().clear();
    Push(play, kControlChange, kSustainPedal, 0, kAtOnce);
    for (int key = 0; key < kKeys; ++key) Push(play, kNoteOff, key, 0, kAtOnce);
    Push(play, kControlChange, kAllNotesOff, 0, kAtOnce);
}

// What a key or a pedal has down in the plug-in comes up.
void CLiveKeys::Release(CInstrument& instrument, const LiveKey& key, std::uint64_t time) noexcept {
    if (key.pedal > 0) return Push(instrument.play, kControlChange, kSustainPedal, 0, time);
    if (key.sent < 0) return;
    if (!key.rings) Push(instrument.play, kNoteOn, key.sent, 0, time);
    Tell(instrument, key, 0, time);
}

void CLiveKeys::EndRinging(CInstrument& instrument, std::uint64_t time) noexcept {
    std::erase_if(instrument.play.liveKeys.Items(), [&](const LiveKey& key) {
        if (key.rings) Tell(instrument, key, 0, time);
        return key.rings;
    });
}

void CLiveKeys::Tell(const CInstrument& instrument, const LiveKey& key, int velocity, std::uint64_t time) noexcept {
    if (key.sent >= 0 && key.origin.source != ELiveSource::kAudition) capture.Add(instrument, key.sent, velocity, time);
}

}  // namespace quib
