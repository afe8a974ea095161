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
    shown.balls.instrument = 0;
    shown.instrumentCount = block.instruments.size();
    for (std::size_t index = 0; index < shown.instrumentCount; ++index) {
        const CInstrument& instrument = *block.instruments[index].instrument;
        FillInstrument(shown.instruments[index], instrument);
        if (instrument.Id() != block.ballsShown) continue;
        shown.balls.instrument = instrument.Id();
        shown.balls.places = instrument.play.balls;
    }
}

const InstrumentPicture* PlayPicture::Find(std::uint32_t id) const noexcept {
    const auto end = instruments.begin() + static_cast<std::ptrdiff_t>(instrumentCount);
    const auto found = std::find_if(instruments.begin(), end, [id](const auto& shown) { return shown.id == id; });
    return found == end ? nullptr : &*found;
}

LanePlace LanePlaceOf(const PlayPicture& picture, std::uint32_t instrument, bool song) noexcept {
    if (!picture.playing) return {};
    if (song) return {CEventLanes::kSongSlot, static_cast<float>(picture.soundingStep) + picture.stepFraction};
    const InstrumentPicture* const shown = picture.Find(instrument);
    if (shown == nullptr || shown->step < 0) return {};
    return {shown->pattern, static_cast<float>(shown->step) + picture.stepFraction};
}

}  // namespace quib
