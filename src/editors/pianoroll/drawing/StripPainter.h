// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Draws what stands at the left of the grid: a keyboard, or the names of drums. User-interface thread.

#include "editors/pianoroll/drawing/RollDrawing.h"

namespace quib {

// `pressed`: the key under the hand, -1 none.
void DrawKeyStrip(const RollDrawing& drawing, int pressed);
void DrawDrumStrip(const RollDrawing& drawing, const KeySet& used, int pressed);

}  // namespace quib
