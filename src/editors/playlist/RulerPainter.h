// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Draws the ruler of the song: the loop above, bars below. User-interface thread.

#include "editors/playlist/SongDrawing.h"

namespace quib {

void DrawRuler(const SongDrawing& drawing, int loopBand);
// The lines of the loop and the playhead; `flag` with the playhead's head.
void DrawMarks(const SongDrawing& drawing, bool flag);

}  // namespace quib
