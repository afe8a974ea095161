// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Draws the band above the grid: bars, beats, steps, the pattern's length and its end. User-interface thread.

#include "editors/pianoroll/drawing/RollDrawing.h"

namespace quib {

void DrawHeader(const RollDrawing& drawing, const QString& lengthText);
// The line where the pattern ends, through the grid.
void DrawPatternEnd(const RollDrawing& drawing, double top, double bottom);

}  // namespace quib
