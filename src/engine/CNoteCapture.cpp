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
    running = transport.playing;
    for (const Played& note : played.Items()) {
        const InstrumentPlayState& play = note.instrument->play;
        EngineNotice notice{EngineNotice::EKind::kNote, note.instrument->Id(), note.key, note.velocity,
                            play.currentPattern};
        notice.x = -1;
        const bool wanted = transport.playing ? settings.recording.IsOn() : settings.stepEntry.IsOn();
        const bool silent = transport.playing && play.currentStep < 0;
        // Ends are always told: their notes may have begun in the other state.
        if (note.velocity > 0 && (!wanted || silent)) continue;
        if (transport.playing) Locate(notice, note, block, transport);
        notices.TryPush(notice);
    }
    played.Items().clear();
}

// What is played sounds one block after it came in, and after the device's latency: it was meant for what
// sounded that much earlier. From the step that runs at the end of the block backwards.
void CNoteCapture::Locate(EngineNotice& notice, const Played& note, const BlockContext& block,
                          const CTransport& transport) const noexcept {
    const std::int64_t started = transport.sampleCounter - block.frames;
    const std::int64_t delay = block.frames + std::max(0, settings.latency.Get());
    const std::int64_t frame = std::max(FrameOf(note.time, block) - delay, -started);
    const std::int64_t stepStart = block.frames + transport.samplesToNextStep - transport.stepSamples;
    const InstrumentPlayState& play = note.instrument->play;
    const double steps =
        std::max(0, play.currentStep) + (static_cast<double>(frame - stepStart) + 0.5) / transport.stepSamples;
    const double place = Wrapped(steps, *note.instrument, block.songMode);
    notice.x = static_cast<float>(WithoutSwing(place, static_cast<double>(note.instrument->swing.Get())));
    notice.y = static_cast<float>(transport.stepSamples);
    notice.sample = started + frame;
}

}  // namespace quib
