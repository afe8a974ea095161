// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/grid/PlayheadPictures.h"

#include <algorithm>

namespace quib {

namespace {

CPlayhead::Picture Playing(double step, const PlayPicture& picture, const EngineSettings& settings) {
    CPlayhead::Picture now;
    now.playing = true;
    now.step = step + static_cast<double>(picture.stepFraction);
    // The tempo that sounds, which automation may have moved away from the project's.
    now.stepsPerSecond = picture.time.tempo / 60 * std::max(1, settings.stepsPerBeat.Get());
    return now;
}

}  // namespace

CPlayhead::Picture PatternPlayhead(const PlayPicture& picture, const EngineSettings& settings,
                                   const CInstrument* instrument, int pattern) {
    const InstrumentPicture* const entry = instrument != nullptr ? picture.Find(instrument->Id()) : nullptr;
    if (!picture.playing || entry == nullptr || entry->pattern != pattern || entry->step < 0) return {};
    const auto notes = instrument->patterns[static_cast<std::size_t>(pattern)].ForEdit();
    CPlayhead::Picture now = Playing(entry->step, picture, settings);
    now.loopStart = notes->LoopStart();
    now.loopEnd = notes->LoopLength();
    return now;
}

CPlayhead::Picture SongPlayhead(const PlayPicture& picture, const EngineSettings& settings) {
    if (!picture.playing || !settings.songMode.IsOn() || picture.soundingStep < 0) return {};
    CPlayhead::Picture now = Playing(picture.soundingStep, picture, settings);
    now.loopEnd = kMaximumSongStep;
    return now;
}

}  // namespace quib
