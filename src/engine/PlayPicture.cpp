// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/PlayPicture.h"

#include <algorithm>

namespace quib {

namespace {

void FillInstrument(InstrumentPicture& shown, const CInstrument& instrument) noexcept {
    const InstrumentPlayState& play = instrument.play;
    shown.id = instrument.Id();
    shown.pattern = play.currentPattern;
    shown.nextPattern = play.nextPattern;
    shown.step = play.currentStep;
    shown.midiCount = play.midiCount;
    const auto& keys = play.heldKeys.Items();
    shown.heldKeyCount = static_cast<std::uint32_t>(std::min(keys.size(), InstrumentPicture::kShownKeys));
    std::transform(keys.begin(), keys.begin() + shown.heldKeyCount, shown.heldKeys.begin(),
                   [](std::int32_t key) { return static_cast<std::uint8_t>(key); });
}

}  // namespace

void FillPicture(PlayPicture& shown, const BlockContext& block, const CTransport& transport) noexcept {
    shown.playing = transport.playing;
    shown.beatsToStart = block.beatsToStart;
    shown.globalStep = transport.globalStep;
    shown.soundingStep = transport.soundingStep;
    shown.maxStepCount = transport.maxStepCount;
    shown.stepFraction = transport.stepFraction;
    shown.sampleCounter = transport.sampleCounter;
    shown.endedAt = transport.endedAt;
    shown.time = block.time;
    shown.instrumentCount = block.instruments.size();
    for (std::size_t index = 0; index < shown.instrumentCount; ++index) {
        FillInstrument(shown.instruments[index], *block.instruments[index].instrument);
    }
}

}  // namespace quib
