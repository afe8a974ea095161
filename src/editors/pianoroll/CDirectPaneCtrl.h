// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A pane that draws only when its window is painted, straight to the screen's picture: thousands of notes that
// move with a hand are neither drawn twice nor copied. User-interface thread.

#include "editors/pianoroll/CPaneCtrl.h"

namespace quib {

class CDirectPaneCtrl : public CPaneCtrl, private CPainted {
public:
    CDirectPaneCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight);
    // Nothing of it goes to the back buffer.
    void Draw() final {}

protected:
    void DrawPart(const QRect& wanted) final;

private:
    void PaintArea(const QRect& area) final;
};

}  // namespace quib
