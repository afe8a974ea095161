// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/SongMode.h"

#include "document/CWorkstation.h"
#include "texts/Texts.h"

namespace quib {

void SetSongMode(CWorkstation& station, bool on) {
    CValue& mode = station.Audio().settings.songMode;
    const float before = mode.Get();
    const float after = on ? 1.0F : 0.0F;
    mode.Set(after);
    station.Changes().ValueEdited(EnginePart(mode), before, after, Text("Song mode"));
}

}  // namespace quib
