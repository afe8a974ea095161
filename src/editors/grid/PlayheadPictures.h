// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a playhead takes of the picture of the playing state. User-interface thread.

#include "editors/grid/CPlayhead.h"
#include "engine/EngineSettings.h"
#include "engine/PlayPicture.h"

namespace quib {

// Of a pattern of an instrument (null: of none): it plays while that pattern does.
CPlayhead::Picture PatternPlayhead(const PlayPicture& picture, const EngineSettings& settings,
                                   const CInstrument* instrument, int pattern);
// Of the song, without its loop: it plays in song mode.
CPlayhead::Picture SongPlayhead(const PlayPicture& picture, const EngineSettings& settings);

}  // namespace quib
