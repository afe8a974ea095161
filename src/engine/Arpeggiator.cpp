// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Arpeggiator.h"

#include <algorithm>

#include "engine/CSequencer.h"

namespace quib {

namespace {

constexpr int kOrderDownward = 1;
constexpr int kOrderRandom = 3;
constexpr int kExtendEachKey = 0;
constexpr int kExtendPassAfterKey = 2;
constexpr int kExtendRandom = 3;
constexpr float kUnitOfDraw = 3.0517578125e-05F;  // 1 / 32768
constexpr float kVelocityOfDraw = 0.0009765625F;  // 1 / 1024

// The settings as numbers that can't be out of hand.
struct Settings {
    int order, extension, extensionMode, interval, gate, rate;
    float holes, velocity;

    explicit Settings(const ArpeggiatorSettings& source) noexcept
        : order(TruncateWithin(source.mode.Get(), 0, kOrderRandom)),
          extension(TruncateWithin(source.ext.Get(), 0, 127)),
          extensionMode(TruncateWithin(source.extMode.Get(), 0, kExtendRandom)),
          interval(TruncateWithin(source.interval.Get(), -127, 127)),
          gate(TruncateWithin(source.gateTime.Get(), 0, 16)),
          rate(TruncateWithin(source.tempo.Get(), 0, 16)),
          holes(static_cast<float>(TruncateWithin(source.hole.Get(), 0, 1000))),
          velocity(source.velocity.Get()) {}
};

// Full velocity less a random part, limited to 0..127. Each use of the limited value draws afresh, so
// that one velocity takes up to four draws; recorded seeds depend on it.
int DrawVelocity(float randomness, CRandom& random) noexcept {
    if (!(randomness > 0.0F)) return 127;
    const auto less = [&] {
        return TruncateWithin(static_cast<float>(random.Draw()) * kVelocityOfDraw * randomness, 0, 1 << 20);
    };
    // NOLINTNEXTLINE(misc-redundant-expression): two draws
    if (127 - less() > 0 && 127 - less() >= 127) return 127;
    if (127 - less() <= 0) return 0;
    return std::max(0, 127 - less());
}

void PlayKey(CInstrument& instrument, const Settings& settings, int offset, int stepSamples, CRandom& random) noexcept {
    InstrumentPlayState& play = instrument.play;
    const ArpeggiatorState& state = play.arpeggiator;
    const auto& held = play.heldKeys.Items();
    if (state.index < 0 || state.index >= static_cast<int>(held.size())) return;
    int repetition = state.repetition;
    if (settings.extensionMode == kExtendPassAfterKey && state.index > state.pass)
        repetition = std::max(0, repetition - 1);
    const int note = held[static_cast<std::size_t>(state.index)] + settings.interval * repetition;
    if (note < 0 || note >= 128) return;
    const int velocity = DrawVelocity(settings.velocity, random);
    // A drawn velocity of 0 is a rest.
    if (velocity > 0) ScheduleNote(play, note, velocity, offset, offset + std::max(1, stepSamples >> settings.gate));
}

// For keys that were not held before: the order begins where it belongs.
void Begin(ArpeggiatorState& state, const Settings& settings, int keys) noexcept {
    if (!state.begun) {
        const bool downward = settings.order == kOrderDownward;
        state.index = downward ? std::max(0, keys - 1) : 0;
        state.upward = !downward;
    }
    state.begun = keys > 0;
}

// Moves the index on. True when a pass over the keys ended.
bool Walk(ArpeggiatorState& state, const Settings& settings, int keys, CRandom& random) noexcept {
    if (settings.order == kOrderRandom) {
        const float slots = static_cast<float>(keys) + settings.holes;
        state.index = static_cast<int>(static_cast<float>(random.Draw()) * kUnitOfDraw * slots);
        if (static_cast<float>(state.index) >= slots) state.index = static_cast<int>(settings.holes) + keys - 1;
        return true;
    }
    if (state.upward) {
        if (++state.index < keys) return false;
        if (settings.order == 0) {
            state.index = 0;
        } else {
            state.upward = false;
            state.index = keys - 1;
        }
        return true;
    }
    if (--state.index >= 0) return false;
    if (settings.order == kOrderDownward) {
        state.index = keys - 1;
    } else {
        state.upward = true;
        state.index = 0;
    }
    return true;
}

void EndPass(ArpeggiatorState& state, const Settings& settings, int keys, CRandom& random) noexcept {
    if (settings.extensionMode == kExtendEachKey) return;
    if (settings.extensionMode == kExtendRandom) {
        const float span = static_cast<float>(settings.extension + 1);
        state.repetition =
            std::min(static_cast<int>(static_cast<float>(random.Draw()) * kUnitOfDraw * span), settings.extension);
    } else {
        if (++state.repetition <= settings.extension) return;
        state.repetition = 0;
    }
    if (++state.pass >= keys) state.pass = 0;
}

}  // namespace

void RunArpeggiator(CInstrument& instrument, int offset, int stepSamples, CRandom& random) noexcept {
    ArpeggiatorState& state = instrument.play.arpeggiator;
    if (--state.countdown > 0) return;
    const Settings settings(instrument.arpeggiator);
    state.countdown = 1 << settings.rate;
    const int keys = static_cast<int>(instrument.play.heldKeys.Items().size());
    Begin(state, settings, keys);
    if (state.index >= keys && (settings.order != kOrderRandom || settings.holes == 0.0F)) state.index = 0;
    PlayKey(instrument, settings, offset, stepSamples, random);
    if (settings.extensionMode == kExtendEachKey) {
        if (++state.repetition <= settings.extension) return;
        state.repetition = 0;
    }
    if (Walk(state, settings, keys, random)) EndPass(state, settings, keys, random);
}

}  // namespace quib
