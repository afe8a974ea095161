// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The colours that the piano roll and its lane are drawn in, looked up once. User-interface thread.

#include <QRgb>
#include <array>

#include "model/edits/NoteState.h"

namespace quib {

struct RollColours {
    RollColours();

    QRgb OfVelocity(int velocity) const noexcept;
    // Black or white, whichever reads better.
    QRgb TextOn(QRgb ground) const noexcept;
    // Beyond the pattern's end.
    QRgb Dimmed(QRgb colour) const noexcept;
    QRgb Hovered(QRgb colour) const noexcept;

    QRgb panel, well, wellDeep, text, textMuted, textDim, edge;
    QRgb gridOff, gridKey, gridRoot, gridStep, gridBeat, gridBar, beyond, ghost, ghostEdge, ink;
    QRgb keyWhite, keyBlack, keyOff, keyBlackOff;
    QRgb pattern, keyboard, transport, record, white;

private:
    std::array<QRgb, kHighestVelocity + 1> velocities{};
};

}  // namespace quib
