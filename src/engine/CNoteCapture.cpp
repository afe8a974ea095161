// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CNoteCapture.h"

#include <algorithm>
#include <cmath>

namespace quib {

namespace {

// Before the line of the grid, but for files the same place.
constexpr double kJustBefore = 0.001;

// Positions before the pattern's beginning lie at its end when it repeats.
double Wrapped(double steps, const CInstrument& instrument, bool songMode) noexcept {
    if (steps >= 0) return steps;
    const auto index = static_cast<std::size_t>(std::clamp(instrument.play.currentPattern, 0, kPatternCount - 1));
    const int length = instrument.patterns[index].ForRender().LoopLength();
    return songMode ? 0 : steps - std::floor(steps / length) * length;
}

const CInstrument* Find(const BlockContext& block, std::uint32_t id) noexcept {
    const auto found = std::ranges::find_if(
        block.instruments, [id](const BlockInstrument& entry) { return entry.instrument->Id() == id; });
    return found == block.instruments.end() ? nullptr : found->instrument;
}

}  // namespace

double WithoutSwing(double steps, double swing) noexcept {
    const double step = std::floor(steps);
    if (static_cast<std::int64_t>(step) % 2 == 0 || swing <= 0) return steps;
    const double late = steps - step - swing;
    if (late >= 0) return step + late;
    return late > -swing / 2 ? step : step - kJustBefore;
}

void CNoteCapture::Add(const CInstrument& instrument, int key, int velocity, std::uint64_t time) noexcept {
    if (settings.recording.IsOn() || settings.stepEntry.IsOn()) played.Add({&instrument, key, velocity, time});
}

void CNoteCapture::Tell(const BlockContext& block, const CTransport& transport) noexcept {
    const bool begins = transport.playing && !running;
    running = transport.playing;
    if (block.beatsToStart > 0 && settings.recording.IsOn()) return Keep(block);
    if (begins) TellEarly(block, transport);
    early.Items().clear();
    for (const Played& note : played.Items()) TellPlayed(note, block, transport);
    played.Items().clear();
}

void CNoteCapture::Keep(const BlockContext& block) noexcept {
    for (const Played& note : played.Items()) {
        early.Add({note.instrument->Id(), note.key, note.velocity, HeardFrame(note, block)});
    }
    played.Items().clear();
    for (Early& note : early.Items()) note.heard -= block.frames;
}

// What was struck a little too early goes on the first frame, and lasts as long as it did.
void CNoteCapture::TellEarly(const BlockContext& block, const CTransport& transport) noexcept {
    const std::int64_t start = block.frames - transport.sampleCounter;
    const auto& notes = early.Items();
    for (auto note = notes.begin(); note != notes.end(); ++note) {
        const CInstrument* const instrument = Find(block, note->instrument);
        if (note->velocity == 0 || note->heard < start - block.beatFrames / 2 || instrument == nullptr) continue;
        if (instrument->play.currentStep < 0) continue;
        const auto tell = [&](int velocity, std::int64_t frame) {
            EngineNotice notice{EngineNotice::EKind::kNote, note->instrument, note->key, velocity,
                                instrument->play.currentPattern};
            Locate(notice, *instrument, frame, block, transport);
            notices.TryPush(notice);
        };
        tell(note->velocity, start);
        const auto end = std::find_if(note + 1, notes.end(), [&](const Early& later) {
            return later.instrument == note->instrument && later.key == note->key;
        });
        if (end != notes.end()) tell(0, start + end->heard - note->heard);
    }
}

void CNoteCapture::TellPlayed(const Played& note, const BlockContext& block, const CTransport& transport) noexcept {
    const InstrumentPlayState& play = note.instrument->play;
    EngineNotice notice{EngineNotice::EKind::kNote, note.instrument->Id(), note.key, note.velocity,
                        play.currentPattern};
    notice.x = -1;
    const bool wanted = transport.playing ? settings.recording.IsOn() : settings.stepEntry.IsOn();
    const bool silent = transport.playing && play.currentStep < 0;
    // Ends are always told: their notes may have begun in the other state.
    if (note.velocity > 0 && (!wanted || silent)) return;
    const std::int64_t start = block.frames - transport.sampleCounter;
    if (transport.playing) Locate(notice, *note.instrument, std::max(HeardFrame(note, block), start), block, transport);
    notices.TryPush(notice);
}

// What is played sounds one block after it came in, and after the device's latency: it was meant for what
// sounded that much earlier.
std::int64_t CNoteCapture::HeardFrame(const Played& note, const BlockContext& block) const noexcept {
    return FrameOf(note.time, block) - block.frames - std::max(0, settings.latency.Get());
}

// From the step that runs at the end of the block backwards.
void CNoteCapture::Locate(EngineNotice& notice, const CInstrument& instrument, std::int64_t frame,
                          const BlockContext& block, const CTransport& transport) noexcept {
    const std::int64_t stepStart = block.frames + transport.samplesToNextStep - transport.stepSamples;
    const InstrumentPlayState& play = instrument.play;
    const double steps =
        std::max(0, play.currentStep) + (static_cast<double>(frame - stepStart) + 0.5) / transport.stepSamples;
    const double place = Wrapped(steps, instrument, block.songMode);
    notice.x = static_cast<float>(WithoutSwing(place, static_cast<double>(instrument.swing.Get())));
    notice.y = static_cast<float>(transport.stepSamples);
    notice.sample = transport.sampleCounter - block.frames + frame;
}

}  // namespace quib
