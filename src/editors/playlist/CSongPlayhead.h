// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The playhead over ruler and lanes: keeps what lies under it and puts that back when it moves on, so that a
// frame draws no lane. Whoever paints there tells it, and draws the playhead with the rest. User-interface thread.

#include <QImage>
#include <array>

#include "editors/playlist/SongDrawing.h"

namespace quib {

class CWinControl;

class CSongPlayhead {
public:
    CSongPlayhead(CWinControl& shownIn, CMasks& textMasks, const SongColours& songColours)
        : window(shownIn), masks(textMasks), colours(songColours) {}

    // The ruler and the lanes, as they are shown, in skin pixels of the window.
    struct Ground {
        QRect ruler;
        QRect lanes;
    };
    // Takes the playhead away, as far as what lies under it is known. False when it has to be drawn anew.
    bool TakeAway();
    // Draws it at a place counted from the ruler's left edge.
    void Put(const Ground& ground, int x);
    // Something was painted here: what is kept of it is old.
    void Painted(const QRect& area);

    // How far its flag reaches to each side of its line, and the width of that.
    static constexpr int kFlagRoom = 7;
    static constexpr int kLine = 2;

private:
    struct Kept {
        QRect area;
        QImage image;
        bool isOld = true;
    };
    CWinControl& window;
    CMasks& masks;
    const SongColours& colours;
    std::array<Kept, 2> kept;  // under the flag and under the line
};

}  // namespace quib
